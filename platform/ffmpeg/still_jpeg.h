// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once
#include "platform/ffmpeg/still_frame.h"

#include <cstdint>
#include <optional>
#include <vector>

namespace veltro::ffmpeg {

/// Which picture, and what its image shall be like.
struct StillWish {
    double seconds = 1.0; ///< from the beginning
    int maxWidth = 800;   ///< of the image as it is shown
    int maxHeight = 800;
    double quality = 0.7; ///< of the JPEG, from 0 to 1
};

/// Makes a JPEG of a picture as it is shown: square pixels, upright, within the wish's limits,
/// never larger than it is. Nothing when it cannot be drawn.
[[nodiscard]] std::optional<std::vector<std::uint8_t>> encodeStill(const StillFrame &still,
                                                                   const StillWish &wish);

}
