// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "engine/transcode/exported_entries.h"

#include "engine/transcode/ffmpeg_runner.h"
#include "platform/ffmpeg/media_tools.h"

#include <exception>
#include <optional>
#include <string>
#include <vector>

namespace veltro {
namespace {

thread_local ffmpeg::CommandResult lastResult;

std::vector<std::string> listOf(std::int32_t count, const char *const *arguments)
{
    std::vector<std::string> list;
    for (std::int32_t i = 0; i < count; ++i) {
        if (arguments[i] != nullptr) {
            list.emplace_back(arguments[i]);
        }
    }
    return list;
}

ffmpeg::CommandResult probeCommand(const std::vector<std::string> &arguments)
{
    return ffmpeg::mediaTools().probe(arguments);
}

/// Keeps the result for the calling thread; this is the border that no exception crosses.
template <typename Command>
std::int32_t keepResult(Command command, std::int32_t count, const char *const *arguments) noexcept
{
    try {
        lastResult = command(listOf(count, arguments));
    } catch (const std::exception &error) {
        lastResult = {-1, {}, error.what()};
    }
    return lastResult.code;
}

}
}

std::int32_t VeltroFFmpegRun(std::int32_t count, const char *const *arguments)
{
    return veltro::keepResult(veltro::runFFmpegCommand, count, arguments);
}

std::int32_t VeltroFFprobeRun(std::int32_t count, const char *const *arguments)
{
    return veltro::keepResult(veltro::probeCommand, count, arguments);
}

const char *VeltroFFmpegOutput()
{
    return veltro::lastResult.output.c_str();
}

const char *VeltroFFmpegLog()
{
    return veltro::lastResult.log.c_str();
}

void VeltroFFmpegCancel(std::int64_t threadId)
{
    veltro::cancelFFmpeg(threadId);
}

std::int32_t VeltroFFmpegProgress(std::int64_t threadId, std::int64_t *bytes, double *seconds)
{
    const std::optional<veltro::ffmpeg::RunProgress> progress = veltro::ffmpegProgress(threadId);
    if (!progress) {
        return 0;
    }
    *bytes = progress->bytesWritten;
    *seconds = progress->positionSeconds;
    return 1;
}
