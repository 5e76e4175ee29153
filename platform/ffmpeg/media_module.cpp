// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/ffmpeg/media_module.h"

#include "platform/ffmpeg/libav.h"
#include "platform/ffmpeg/media_duration.h"
#include "platform/ffmpeg/probe_command.h"
#include "platform/ffmpeg/runner_session.h"
#include "platform/ffmpeg/safe_input.h"
#include "platform/ffmpeg/session_log.h"
#include "platform/ffmpeg/still_image.h"
#include "platform/ffmpeg/stream_probe.h"

#include <array>
#include <cstddef>
#include <new>

namespace veltro::ffmpeg {
namespace {

// Holds nothing: each call keeps its own state, so that calls on several threads do not meet.
class InProcessTools : public MediaTools {
public:
    std::unique_ptr<Session> makeSession() override { return makeRunnerSession(); }
    CommandResult probe(std::span<const std::string> arguments) noexcept override
    {
        return runProbeCommand(arguments);
    }
    std::optional<std::vector<StreamInformation>>
    streams(const std::filesystem::path &file) noexcept override
    {
        return probeStreams(file);
    }
    std::optional<std::vector<std::uint8_t>> still(const std::filesystem::path &file,
                                                   double seconds, int maxWidth, int maxHeight,
                                                   double quality) noexcept override
    {
        return takeStill(file, {seconds, maxWidth, maxHeight, quality});
    }
    std::optional<double> duration(const std::filesystem::path &file) noexcept override
    {
        return readDuration(file);
    }
    const char *localDemuxers() const noexcept override { return ffmpeg::localDemuxers(); }
    void keepLog() noexcept override { SessionLog::takeCallback(); }
};

}
}

[[gnu::visibility("default")]] veltro::ffmpeg::MediaTools *veltroMediaTools() noexcept
{
    // A file of some bytes can claim a table of gigabytes, which the libraries get before they
    // look for it. No single table, packet or plane of a picture that we take is larger than this.
    constexpr std::size_t largestBlock = std::size_t{320} << 20;
    static const bool isLimited = (av_max_alloc(largestBlock), true);
    static_cast<void>(isLimited);
    // Never destroyed: threads that end while the process does may still ask.
    using veltro::ffmpeg::InProcessTools;
    alignas(InProcessTools) static std::array<std::byte, sizeof(InProcessTools)> place;
    static auto *const tools = ::new (place.data()) InProcessTools;
    return tools;
}
