// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/ffmpeg/frame_timing.h"

#include "platform/ffmpeg/libav_versions.h"

#include <algorithm>
#include <cmath>

namespace veltro::ffmpeg {
namespace {

std::vector<std::int64_t> parseKeyFrames(const std::string &text, AVRational base)
{
    std::vector<std::int64_t> times;
    for (std::size_t begin = 0; begin <= text.size();) {
        const std::size_t end = std::min(text.find(',', begin), text.size());
        const std::int64_t time =
            parseDuration("force_key_frames", text.substr(begin, end - begin));
        times.push_back(av_rescale_q(time, microseconds, base));
        begin = end + 1;
    }
    std::sort(times.begin(), times.end());
    return times;
}

}

PictureTiming::PictureTiming(const EncodeSettings &settings, AVRational encoder, std::int64_t start)
    : m_encoder(encoder), m_start(start), m_keepsEveryFrame(settings.keepsEveryFrame)
{
    const std::string &wish = settings.keyFrames;
    m_followsSource = wish.starts_with("source");
    if (wish.starts_with("expr:")) {
        throw CommandFailed("Expressions for force_key_frames are not supported by this program");
    }
    if (!wish.empty() && !m_followsSource) {
        m_keyFrames = parseKeyFrames(wish, encoder);
    }
}

bool PictureTiming::place(AVFrame &frame, AVRational filter)
{
    if (m_keepsEveryFrame ? !placeExactly(frame, filter) : !placeOnGrid(frame, filter)) {
        return false;
    }
    frame.pict_type = AV_PICTURE_TYPE_NONE;
    force(frame);
    return true;
}

bool PictureTiming::placeExactly(AVFrame &frame, AVRational filter)
{
    const std::int64_t place = frame.pts == noTimestamp
                                   ? std::max(std::int64_t{0}, m_next)
                                   : subtractTime(av_rescale_q(frame.pts, filter, m_encoder),
                                                  av_rescale_q(m_start, microseconds, m_encoder));
    if (m_next != noTimestamp && place < m_next) {
        return false;
    }
    frame.pts = place;
    m_next = addTime(place, 1);
    return true;
}

// The encoder counts in frames. Frames that come late leave places free; those that come somewhat
// early move to the next place, and those that are hopelessly early have none.
bool PictureTiming::placeOnGrid(AVFrame &frame, AVRational filter)
{
    m_next = std::max(std::int64_t{0}, m_next);
    if (frame.pts != noTimestamp) {
        const double place = av_q2d(filter) / av_q2d(m_encoder);
        const double start = static_cast<double>(m_start) / (AV_TIME_BASE * av_q2d(m_encoder));
        const double wanted = static_cast<double>(frame.pts) * place - start;
        const double lead = wanted - static_cast<double>(m_next);
        const double length =
            std::max(1., std::rint(static_cast<double>(durationOf(frame)) * place));
        if (lead + length <= -0.6) {
            return false;
        }
        if (lead > 0 && wanted < 1e15) {
            m_next = std::llrint(wanted);
        }
    }
    frame.pts = m_next++;
    return true;
}

void PictureTiming::force(AVFrame &frame)
{
    bool isForced = m_followsSource && isKeyFrame(frame);
    while (m_nextKeyFrame < m_keyFrames.size() && frame.pts >= m_keyFrames[m_nextKeyFrame]) {
        ++m_nextKeyFrame;
        isForced = true;
    }
    if (isForced) {
        frame.pict_type = AV_PICTURE_TYPE_I;
    }
}

}
