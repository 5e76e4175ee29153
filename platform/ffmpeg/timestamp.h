// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once
#include "platform/ffmpeg/libav.h"

extern "C" {
#include <libavutil/mathematics.h>
}

#include <cstdint>
#include <limits>

namespace veltro::ffmpeg {

/// The time base that the whole run counts in.
inline constexpr AVRational microseconds{1, AV_TIME_BASE};

/// A timestamp that a container did not give.
inline constexpr std::int64_t noTimestamp = std::numeric_limits<std::int64_t>::min();
static_assert(noTimestamp == AV_NOPTS_VALUE);

/// Sums and differences of what a file claims: a hostile file reaches for the ends of the range,
/// where the result stays.
[[nodiscard]] inline std::int64_t addTime(std::int64_t a, std::int64_t b)
{
    std::int64_t sum = 0;
    if (!__builtin_add_overflow(a, b, &sum)) {
        return sum;
    }
    return b < 0 ? noTimestamp + 1 : std::numeric_limits<std::int64_t>::max();
}
[[nodiscard]] inline std::int64_t subtractTime(std::int64_t a, std::int64_t b)
{
    std::int64_t difference = 0;
    if (!__builtin_sub_overflow(a, b, &difference)) {
        return difference;
    }
    return b > 0 ? noTimestamp + 1 : std::numeric_limits<std::int64_t>::max();
}
[[nodiscard]] inline bool isFurtherThan(std::int64_t distance, std::int64_t limit)
{
    return distance > limit || distance < -limit;
}

}
