// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/ffmpeg/input_loop.h"

#include "platform/ffmpeg/timestamp.h"

#include <algorithm>

namespace veltro::ffmpeg {

InputLoop::InputLoop(std::int64_t rounds, const AVFormatContext &file)
    : m_rounds(rounds), m_streams(file.nb_streams)
{
    for (unsigned i = 0; i < file.nb_streams; ++i) {
        m_streams[i].base = file.streams[i]->time_base;
    }
}

void InputLoop::place(AVPacket &packet)
{
    const auto index = static_cast<std::size_t>(packet.stream_index);
    if (m_rounds == 0 && m_length == 0) {
        return; // one round only
    }
    m_sawPacket = true;
    if (index >= m_streams.size()) {
        return;
    }
    Extent &extent = m_streams[index];
    const std::int64_t shift = av_rescale_q(m_length, microseconds, extent.base);
    if (packet.dts != noTimestamp) {
        packet.dts = addTime(packet.dts, shift);
    }
    if (packet.pts == noTimestamp) {
        return;
    }
    packet.pts = addTime(packet.pts, shift);
    const std::int64_t end = addTime(packet.pts, std::max(std::int64_t{1}, packet.duration));
    extent.begin = extent.isKnown ? std::min(extent.begin, packet.pts) : packet.pts;
    extent.end = extent.isKnown ? std::max(extent.end, end) : end;
    extent.isKnown = true;
}

bool InputLoop::beginAgain(AVFormatContext &file)
{
    if (m_rounds == 0 || !m_sawPacket) { // nothing in it: it would begin again for ever
        return false;
    }
    const std::int64_t start = file.start_time == noTimestamp ? 0 : file.start_time;
    if (avformat_seek_file(&file, -1, noTimestamp, start, start, 0) < 0) {
        return false;
    }
    for (const Extent &extent : m_streams) {
        m_length = std::max(m_length, av_rescale_q(subtractTime(extent.end, extent.begin),
                                                   extent.base, microseconds));
    }
    m_rounds -= m_rounds > 0 ? 1 : 0;
    m_sawPacket = false;
    return true;
}

}
