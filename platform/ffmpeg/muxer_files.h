// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once
#include "platform/ffmpeg/libav.h"
#include "platform/ffmpeg/written_file.h"

#include <list>
#include <mutex>
#include <string>
#include <vector>

namespace veltro::ffmpeg {

class RunControl;

/// The files that muxers open by themselves, one for each picture or segment, in one run. They go
/// with the run unless it says that they stay. An input is never opened for writing, nor is
/// anything but a local file. Made and ended by the run's thread; any thread may mux.
class MuxerFiles {
public:
    /// @param inputs paths of the run's local inputs.
    /// @param control of the run; it leads a muxer here.
    MuxerFiles(std::vector<std::string> inputs, RunControl &control);
    ~MuxerFiles();
    MuxerFiles(const MuxerFiles &) = delete;
    MuxerFiles &operator=(const MuxerFiles &) = delete;

    /// From now on the muxer, and those that it makes for its parts, open files here. Its
    /// interrupt callback is that of the run.
    static void attachTo(AVFormatContext &muxer);

    void keep();

private:
    static int open(AVFormatContext *muxer, AVIOContext **file, const char *url, int flags,
                    AVDictionary **options);
    [[nodiscard]] bool isInput(const std::string &path) const;
    void opened(const std::string &path);

    const std::vector<std::string> m_inputs;
    RunControl &m_control;
    std::mutex m_mutex;
    std::list<WrittenFile> m_files;
};

}
