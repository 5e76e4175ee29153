// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/ffmpeg/input_timeline.h"

#include <algorithm>
#include <limits>

namespace veltro::ffmpeg {
namespace {

// A set of flags, although the library calls it one value.
constexpr auto nearestKeepingEnds = static_cast<AVRounding>(
    AV_ROUND_NEAR_INF | AV_ROUND_PASS_MINMAX); // NOLINT(*EnumCastOutOfRange)

std::int64_t toMicroseconds(std::int64_t timestamp, AVRational base)
{
    return av_rescale_q_rnd(timestamp, base, microseconds, nearestKeepingEnds);
}

bool isTimed(const AVStream &stream)
{
    return stream.codecpar->codec_type == AVMEDIA_TYPE_VIDEO ||
           stream.codecpar->codec_type == AVMEDIA_TYPE_AUDIO;
}

void add(std::int64_t &timestamp, std::int64_t amount)
{
    if (timestamp != noTimestamp) {
        timestamp = addTime(timestamp, amount);
    }
}

void scale(std::int64_t &timestamp, double factor)
{
    if (timestamp != noTimestamp && factor != 1) {
        timestamp = static_cast<std::int64_t>(static_cast<double>(timestamp) * factor);
    }
}

}

void StreamClock::begin(const AVStream &stream, bool copied)
{
    m_stream = &stream;
    m_copied = copied;
}

void StreamClock::seeFirst(const AVPacket &packet)
{
    m_sawFirst = true;
    // Frames that are shown later than they are decoded let decoding begin before zero.
    const AVRational rate = m_stream->avg_frame_rate;
    m_dts = rate.num ? static_cast<std::int64_t>(-m_stream->codecpar->video_delay *
                                                 static_cast<double>(AV_TIME_BASE) / av_q2d(rate))
                     : 0;
    if (packet.pts != noTimestamp && m_copied) {
        m_dts = addTime(m_dts, av_rescale_q(packet.pts, m_stream->time_base, microseconds));
    }
}

void StreamClock::advance(const AVPacket &packet)
{
    if (!m_sawFirst) {
        seeFirst(packet);
    }
    if (m_nextDts == noTimestamp) {
        m_nextDts = m_dts;
    }
    if (packet.dts != noTimestamp) {
        m_nextDts = av_rescale_q(packet.dts, m_stream->time_base, microseconds);
    }
    m_dts = m_nextDts;
    const AVCodecParameters &codec = *m_stream->codecpar;
    if (codec.codec_type == AVMEDIA_TYPE_VIDEO) {
        m_nextDts = addTime(m_nextDts, videoStep(packet));
    } else if (codec.codec_type == AVMEDIA_TYPE_AUDIO) {
        const bool countsSamples = codec.sample_rate && (m_copied || codec.frame_size);
        m_nextDts = addTime(m_nextDts,
                            countsSamples
                                ? std::int64_t{AV_TIME_BASE} * codec.frame_size / codec.sample_rate
                                : av_rescale_q(packet.duration, m_stream->time_base, microseconds));
    }
}

std::int64_t StreamClock::videoStep(const AVPacket &packet) const
{
    if (m_forcedRate.num) {
        const std::int64_t frame = av_rescale_q(m_nextDts, microseconds, av_inv_q(m_forcedRate));
        return subtractTime(av_rescale_q(frame + 1, av_inv_q(m_forcedRate), microseconds),
                            m_nextDts);
    }
    if (packet.duration) {
        return av_rescale_q(packet.duration, m_stream->time_base, microseconds);
    }
    const AVRational rate = m_stream->avg_frame_rate;
    if (rate.num <= 0) {
        return 0;
    }
    const AVCodecParserContext *parser = av_stream_get_parser(m_stream);
    const int fields = parser ? parser->repeat_pict + 1 : 1;
    return std::int64_t{AV_TIME_BASE} * rate.den * fields / rate.num;
}

InputTimeline::InputTimeline(AVFormatContext *file, std::int64_t offset, bool keepsTimestamps)
    : m_file(file), m_keepsTimestamps(keepsTimestamps), m_offset(offset)
{}

void InputTimeline::correct(AVPacket &packet, StreamState state)
{
    const AVStream &stream = *m_file->streams[packet.stream_index];
    if (!state.isUnwrapped && m_file->start_time != noTimestamp && stream.pts_wrap_bits < 64) {
        settleStart(state.clock);
        unwrap(packet, state);
    }
    const std::int64_t offset = av_rescale_q(m_offset, microseconds, stream.time_base);
    add(packet.dts, offset);
    add(packet.pts, offset);
    scale(packet.dts, state.scale);
    scale(packet.pts, state.scale);

    if (isTimed(stream) && packet.dts != noTimestamp && !m_keepsTimestamps) {
        const bool mayJump = m_file->iformat->flags & AVFMT_TS_DISCONT;
        if (state.clock.expected() == noTimestamp) {
            if (mayJump) {
                closeGapBetweenStreams(packet, stream);
            }
        } else if (mayJump) {
            closeGapInStream(packet, stream, state.clock);
        } else {
            dropImpossible(packet, stream, state.clock.expected());
        }
    }
    if (packet.dts != noTimestamp) {
        m_last = av_rescale_q(packet.dts, stream.time_base, microseconds);
    }
}

// Streams that nobody wants may begin earlier than those that are read: what counts as the file's
// start is known only now.
void InputTimeline::settleStart(const StreamClock &clock)
{
    if (clock.expected() != noTimestamp || m_offset != -m_file->start_time ||
        !(m_file->iformat->flags & AVFMT_TS_DISCONT)) {
        return;
    }
    std::int64_t start = std::numeric_limits<std::int64_t>::max();
    for (unsigned i = 0; i < m_file->nb_streams; ++i) {
        const AVStream &stream = *m_file->streams[i];
        if (stream.discard != AVDISCARD_ALL && stream.start_time != noTimestamp) {
            start =
                std::min(start, av_rescale_q(stream.start_time, stream.time_base, microseconds));
        }
    }
    if (start > m_file->start_time) {
        m_offset = -start;
    }
}

void InputTimeline::unwrap(AVPacket &packet, StreamState &state)
{
    const AVStream &stream = *m_file->streams[packet.stream_index];
    const int bits = stream.pts_wrap_bits;
    state.isUnwrapped = true;
    if (bits < 2 || bits > 62) {
        return;
    }
    const std::int64_t start = av_rescale_q(m_file->start_time, microseconds, stream.time_base);
    const std::int64_t half = std::int64_t{1} << (bits - 1);
    for (std::int64_t *timestamp : {&packet.dts, &packet.pts}) {
        if (*timestamp != noTimestamp && *timestamp > addTime(start, half)) {
            *timestamp = subtractTime(*timestamp, 2 * half);
            state.isUnwrapped = false;
        }
    }
}

void InputTimeline::closeGapBetweenStreams(AVPacket &packet, const AVStream &stream)
{
    if (m_last == noTimestamp) {
        return;
    }
    const std::int64_t delta = subtractTime(toMicroseconds(packet.dts, stream.time_base), m_last);
    if (isFurtherThan(delta, largestJump)) {
        shift(packet, stream, delta);
    }
}

void InputTimeline::closeGapInStream(AVPacket &packet, const AVStream &stream,
                                     const StreamClock &clock)
{
    const std::int64_t dts = toMicroseconds(packet.dts, stream.time_base);
    const std::int64_t delta = subtractTime(dts, clock.expected());
    const bool goesBack = addTime(dts, AV_TIME_BASE / 10) < clock.position();
    if (isFurtherThan(delta, largestJump) || goesBack) {
        shift(packet, stream, delta);
    }
}

void InputTimeline::shift(AVPacket &packet, const AVStream &stream, std::int64_t delta)
{
    m_offset = subtractTime(m_offset, delta);
    const std::int64_t amount = -av_rescale_q(delta, microseconds, stream.time_base);
    add(packet.dts, amount);
    add(packet.pts, amount);
}

void InputTimeline::dropImpossible(AVPacket &packet, const AVStream &stream, std::int64_t expected)
{
    for (std::int64_t *timestamp : {&packet.dts, &packet.pts}) {
        if (*timestamp == noTimestamp) {
            continue;
        }
        const std::int64_t delta =
            subtractTime(av_rescale_q(*timestamp, stream.time_base, microseconds), expected);
        if (isFurtherThan(delta, largestError)) {
            *timestamp = noTimestamp;
        }
    }
}

}
