// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/ffmpeg/frame_timing.h"

#include "platform/ffmpeg/libav_versions.h"

#include <algorithm>
#include <cmath>
#include <string_view>

namespace veltro::ffmpeg {
namespace {

// One item of a list: a time, or "chapters" and what is added to where each of them begins.
void addKeyFrameTimes(const std::string &item, const std::vector<std::int64_t> &chapters,
                      std::vector<std::int64_t> &times)
{
    constexpr std::string_view everyChapter = "chapters";
    if (!item.starts_with(everyChapter)) {
        times.push_back(parseDuration("force_key_frames", item));
        return;
    }
    const std::string delta = item.substr(everyChapter.size());
    const std::int64_t shift = delta.empty() ? 0 : parseDuration("force_key_frames", delta);
    for (const std::int64_t chapter : chapters) {
        times.push_back(addTime(chapter, shift));
    }
}

std::vector<std::int64_t> parseKeyFrames(const std::string &text, AVRational base,
                                         const std::vector<std::int64_t> &chapters)
{
    std::vector<std::int64_t> times;
    for (std::size_t begin = 0; begin <= text.size();) {
        const std::size_t end = std::min(text.find(',', begin), text.size());
        addKeyFrameTimes(text.substr(begin, end - begin), chapters, times);
        begin = end + 1;
    }
    for (std::int64_t &time : times) {
        time = av_rescale_q(time, microseconds, base);
    }
    std::sort(times.begin(), times.end());
    return times;
}

// What an expression can ask for, in the order of the values.
enum KeyFrameValue : std::uint8_t { number, forced, lastForcedNumber, lastForcedTime, time };
constexpr std::array<const char *, 6> keyFrameNames{
    "n", "n_forced", "prev_forced_n", "prev_forced_t", "t", nullptr};

}

ForcedKeyFrames::ForcedKeyFrames(const std::string &wish, AVRational encoder,
                                 const std::vector<std::int64_t> &chapters)
    : m_encoder(encoder), m_followsSource(wish.starts_with("source")), m_values{0, 0, NAN, NAN, NAN}
{
    constexpr std::string_view asExpression = "expr:";
    if (wish.starts_with(asExpression)) {
        AVExpr *parsed = nullptr;
        const std::string text = wish.substr(asExpression.size());
        if (av_expr_parse(&parsed, text.c_str(), keyFrameNames.data(), nullptr, nullptr, nullptr,
                          nullptr, 0, nullptr) < 0) {
            throw CommandFailed("Invalid force_key_frames expression '" + text + "'");
        }
        m_expression.reset(parsed);
    } else if (!wish.empty() && !m_followsSource) {
        m_times = parseKeyFrames(wish, encoder, chapters);
    }
}

bool ForcedKeyFrames::wants(const AVFrame &frame)
{
    if (m_first == noTimestamp) {
        m_first = frame.pts;
    }
    if (m_expression) {
        return isDue(static_cast<double>(subtractTime(frame.pts, m_first)) * av_q2d(m_encoder));
    }
    bool wants = m_followsSource && isKeyFrame(frame);
    while (m_next < m_times.size() && frame.pts >= m_times[m_next]) {
        ++m_next;
        wants = true;
    }
    return wants;
}

bool ForcedKeyFrames::isDue(double seconds)
{
    m_values[time] = seconds;
    const double answer = av_expr_eval(m_expression.get(), m_values.data(), nullptr);
    const bool wants = answer != 0 && !std::isnan(answer);
    if (wants) {
        m_values[lastForcedNumber] = m_values[number];
        m_values[lastForcedTime] = seconds;
        m_values[forced] += 1;
    }
    m_values[number] += 1;
    return wants;
}

PictureTiming::PictureTiming(const EncodeSettings &settings, AVRational encoder, std::int64_t start)
    : m_encoder(encoder), m_start(start), m_keepsEveryFrame(settings.keepsEveryFrame)
{}

bool PictureTiming::place(AVFrame &frame, AVRational filter)
{
    return m_keepsEveryFrame ? placeExactly(frame, filter) : placeOnGrid(frame, filter);
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

}
