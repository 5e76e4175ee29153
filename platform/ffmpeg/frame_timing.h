// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once
#include "platform/ffmpeg/output_file.h"

#include <cstdint>
#include <string>
#include <vector>

namespace veltro::ffmpeg {

/// Brings the timestamps of pictures onto an encoder's time base. The rate stays variable: no
/// picture is made up for a gap, and one goes only when two would fall on the same place.
class PictureTiming {
public:
    /// @param encoder the encoder's time base.
    /// @param start where the output begins, in microseconds.
    PictureTiming(const EncodeSettings &settings, AVRational encoder, std::int64_t start);

    /// Sets the frame's timestamp. @returns false for a frame that is to be left out.
    [[nodiscard]] bool place(AVFrame &frame, AVRational filter);

private:
    [[nodiscard]] bool placeExactly(AVFrame &frame, AVRational filter);
    [[nodiscard]] bool placeOnGrid(AVFrame &frame, AVRational filter);
    void force(AVFrame &frame);

    const AVRational m_encoder;
    const std::int64_t m_start;
    const bool m_keepsEveryFrame;
    std::int64_t m_next = noTimestamp;     // the earliest place for the next frame
    bool m_followsSource = false;          // key frames where the source has them
    std::vector<std::int64_t> m_keyFrames; // in the encoder's time base, rising
    std::size_t m_nextKeyFrame = 0;
};

}
