// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once
#include "platform/ffmpeg/libav.h"

#include <cstdint>
#include <initializer_list>
#include <optional>
#include <string>

namespace veltro::ffmpeg {

/// Texts of the filters that we put around those of the command line. Empty means none.

/// Joins filters that stand one after another.
class FilterChain {
public:
    void add(const std::string &filter)
    {
        if (!filter.empty()) {
            m_text += (m_text.empty() ? "" : ",") + filter;
        }
    }
    [[nodiscard]] std::string textOr(const std::string &nothing) const
    {
        return m_text.empty() ? nothing : m_text;
    }

private:
    std::string m_text;
};

/// The matrix that says how the stream's pictures are to be turned, nine numbers; null when none.
[[nodiscard]] const std::int32_t *displayMatrixOf(const AVStream &stream);
/// Turns and mirrors pictures as the matrix asks.
[[nodiscard]] std::string rotationFilter(const std::int32_t *matrix);

/// Cuts to a range, in microseconds.
[[nodiscard]] std::string trimFilter(bool isVideo, std::optional<std::int64_t> start,
                                     std::optional<std::int64_t> duration);

[[nodiscard]] std::string formatFilter(std::initializer_list<AVPixelFormat> formats);
/// Any format that the encoder takes.
[[nodiscard]] std::string formatFilter(const AVCodec *encoder);
/// The format itself if the encoder takes it, else the one that loses least.
[[nodiscard]] AVPixelFormat closestFormat(const AVCodec *encoder, AVPixelFormat wanted);

/// What the command line wants of the sound; zero or empty where it says nothing.
struct SoundWish {
    AVSampleFormat format = AV_SAMPLE_FMT_NONE;
    int rate = 0;
    int channels = 0;
    std::string layout;
};
/// Converts to what is wished, and otherwise to something that the encoder takes.
[[nodiscard]] std::string soundFormatFilter(const AVCodec *encoder, const SoundWish &wish);

}
