// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once
#include "platform/ffmpeg/av_ptr.h"

#include <array>
#include <cstdint>
#include <optional>

namespace veltro::ffmpeg {

class TimeLimit;

/// A decoded picture, and what the file says of how it is shown.
struct StillFrame {
    FramePtr frame;
    AVRational pixelAspect{0, 1};                         ///< width to height; 0/1 when not told
    std::optional<std::array<std::int32_t, 9>> transform; ///< display matrix, in 16.16
};

/// The picture that a player shows at a time: the last one that begins at or before it. Short
/// media gives its last picture, media that begins later its first.
/// The first stream counts that has moving (or standing) pictures and a decoder; pictures that are
/// attached to sound are none.
/// @param seconds from the beginning of the stream.
[[nodiscard]] std::optional<StillFrame> findStillFrame(AVFormatContext &input, double seconds,
                                                       const TimeLimit &limit);

}
