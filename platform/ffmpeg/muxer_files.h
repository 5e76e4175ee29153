// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once
#include "platform/ffmpeg/input_file.h"
#include "platform/ffmpeg/libav.h"
#include "platform/ffmpeg/written_file.h"

#include <list>
#include <mutex>
#include <optional>
#include <string>

namespace veltro::ffmpeg {

class RunControl;

/// The files that muxers open by themselves, one for each picture or segment, in one run. They go
/// with the run unless it says that they stay. What an input is read from is never opened for
/// writing, nor is anything but a local file. Made and ended by the run's thread; any thread may
/// mux.
class MuxerFiles {
public:
    /// @param inputs of the run, all of them; they outlive this.
    /// @param control of the run; it leads a muxer here.
    MuxerFiles(const InputFiles &inputs, RunControl &control);
    ~MuxerFiles();
    MuxerFiles(const MuxerFiles &) = delete;
    MuxerFiles &operator=(const MuxerFiles &) = delete;

    /// From now on the muxer, and those that it makes for its parts, open files here. Its
    /// interrupt callback is that of the run.
    static void attachTo(AVFormatContext &muxer);

    void keep();

    /// Why a muxer was kept from a file, once one was. Any thread.
    [[nodiscard]] std::optional<std::string> refusal() const;

private:
    static int open(AVFormatContext *muxer, AVIOContext **file, const char *url, int flags,
                    AVDictionary **options);
    [[nodiscard]] bool mayWrite(const char *url, const std::string &path);
    void opened(const std::string &path);

    const InputFiles &m_inputs;
    RunControl &m_control;
    mutable std::mutex m_mutex;
    std::list<WrittenFile> m_files;       // guarded by m_mutex
    std::optional<std::string> m_refusal; // guarded by m_mutex
};

}
