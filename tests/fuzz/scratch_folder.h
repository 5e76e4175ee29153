// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once
#include "tests/fuzz/mutator.h"

#include <filesystem>
#include <map>
#include <string>

namespace veltro::fuzz {

[[nodiscard]] Bytes readBytes(const std::filesystem::path &file);
void writeBytes(const std::filesystem::path &file, const Bytes &content);

/// A private folder, in memory where that is to be had, for the input of a run and all that it may
/// leave. Removed with the object; what a crash left stays for whoever looks.
class ScratchFolder {
public:
    ScratchFolder();
    ~ScratchFolder();
    ScratchFolder(const ScratchFolder &) = delete;
    ScratchFolder &operator=(const ScratchFolder &) = delete;

    [[nodiscard]] const std::filesystem::path &path() const { return m_path; }
    /// The files in it, each with its size.
    [[nodiscard]] std::map<std::string, std::uintmax_t> files() const;
    void clear() const;

private:
    std::filesystem::path m_path;
};

}
