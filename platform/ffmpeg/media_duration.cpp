// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/ffmpeg/media_duration.h"

#include "platform/ffmpeg/file_look.h"
#include "platform/ffmpeg/safe_input.h"
#include "platform/ffmpeg/timestamp.h"

#include <algorithm>
#include <chrono>
#include <exception>
#include <limits>
#include <span>

namespace veltro::ffmpeg {
namespace {

// A file without a length is read through, which a disk does in seconds.
constexpr std::chrono::seconds longestReading(10);
// Beyond a century a header lies.
constexpr std::int64_t longestDuration = std::int64_t{100} * 366 * 24 * 3600 * AV_TIME_BASE;

std::optional<double> inSeconds(std::int64_t duration)
{
    if (duration <= 0 || duration > longestDuration) {
        return std::nullopt;
    }
    return static_cast<double>(duration) / AV_TIME_BASE;
}

// What the container's header says: of the whole, or else of its longest stream.
std::optional<double> toldByHeader(const AVFormatContext &input)
{
    if (const auto whole = inSeconds(input.duration)) {
        return whole;
    }
    std::int64_t longest = 0;
    for (const AVStream *stream : std::span(input.streams, input.nb_streams)) {
        if (stream->duration > 0 && stream->time_base.num > 0) {
            longest =
                std::max(longest, av_rescale_q(stream->duration, stream->time_base, microseconds));
        }
    }
    return inSeconds(longest);
}

// The libraries' other ways to know are a header after all and the times at both ends.
bool isGuess(const AVFormatContext &input)
{
    return input.duration_estimation_method == AVFMT_DURATION_FROM_BITRATE;
}

// From the first packet's time to the last one's end.
std::optional<double> countPackets(AVFormatContext &input, const TimeLimit &limit)
{
    const PacketPtr packet(av_packet_alloc());
    std::int64_t first = std::numeric_limits<std::int64_t>::max();
    std::int64_t last = noTimestamp;
    while (packet && av_read_frame(&input, packet.get()) >= 0) {
        if (limit.isReached()) {
            return std::nullopt;
        }
        const AVRational base = input.streams[packet->stream_index]->time_base;
        const std::int64_t begin = packet->pts != noTimestamp ? packet->pts : packet->dts;
        if (begin != noTimestamp) {
            const std::int64_t length = std::max(std::int64_t{0}, packet->duration);
            first = std::min(first, av_rescale_q(begin, base, microseconds));
            last = std::max(last, av_rescale_q(addTime(begin, length), base, microseconds));
        }
        av_packet_unref(packet.get());
    }
    return last == noTimestamp ? std::nullopt : inSeconds(subtractTime(last, first));
}

bool isStandingPicture(const AVFormatContext &input)
{
    return av_match_list(input.iformat->name,
                         "bmp_pipe,jpeg_pipe,jpegxl_pipe,png_pipe,tiff_pipe,webp_pipe", ',') > 0;
}

std::optional<double> durationOfFile(AVFormatContext &input, const TimeLimit &limit)
{
    if (isStandingPicture(input)) {
        return std::nullopt; // shown for as long as one likes
    }
    if (const auto told = toldByHeader(input)) {
        return told;
    }
    if (readStreamInformation(input) < 0) {
        return std::nullopt;
    }
    if (const auto told = toldByHeader(input); told && !isGuess(input)) {
        return told;
    }
    return countPackets(input, limit);
}

}

std::optional<double> readDuration(const std::filesystem::path &file) noexcept
try {
    const FileLook look(file, longestReading);
    return look.input() ? durationOfFile(*look.input(), look.limit()) : std::nullopt;
} catch (const std::exception &) {
    return std::nullopt; // out of memory: as good as unreadable
}

}
