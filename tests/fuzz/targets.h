// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once
#include "tests/fuzz/mutator.h"
#include "tests/fuzz/scratch_folder.h"

#include <atomic>
#include <filesystem>
#include <memory>
#include <mutex>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace veltro::ffmpeg {
class Session;
}

namespace veltro::fuzz {

/// A run that did not crash and still broke a promise.
class PromiseBroken : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// The session that runs now, so that a watch on another thread can cancel it. Any thread.
class RunningSession {
public:
    void set(ffmpeg::Session *session);
    void cancel();

private:
    std::mutex m_lock;
    ffmpeg::Session *m_session = nullptr; // guarded by m_lock; owned by whoever set it
};

/// What is tried on a changed input.
class Target {
public:
    virtual ~Target() = default;
    /// Makes the input of one run in the scratch folder; the same for the same chance.
    virtual void prepare(Chance &chance) = 0;
    /// Puts an input that was kept in place of one of prepare()'s.
    virtual void load(const std::filesystem::path &kept) = 0;
    /// @returns whether the input was good enough to be worked with.
    /// @throws PromiseBroken
    [[nodiscard]] virtual bool run(RunningSession &running) = 0;
    /// What prepare() or load() made, in the form that load() reads.
    [[nodiscard]] virtual Bytes input() const = 0;
    [[nodiscard]] virtual std::string extension() const = 0;
};

/// @param name "arguments", "probe", "still", "copy" or "transcode"; null for any other.
[[nodiscard]] std::unique_ptr<Target> makeTarget(std::string_view name,
                                                 const std::filesystem::path &corpus,
                                                 const ScratchFolder &scratch);

}
