// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once
#include "platform/ffmpeg/libav.h"

#include <chrono>

namespace veltro::ffmpeg {

/// How long a look into a file may take: a hostile one can ask for hours of decoding. Whoever
/// reaches it goes on with what is there. The thread that made it, and readers of interrupt().
class TimeLimit {
public:
    explicit TimeLimit(std::chrono::steady_clock::duration allowed)
        : m_end(std::chrono::steady_clock::now() + allowed)
    {}

    [[nodiscard]] bool isReached() const { return std::chrono::steady_clock::now() >= m_end; }

    /// Ends the libraries' own loops. The limit must outlive who uses it.
    [[nodiscard]] AVIOInterruptCB interrupt()
    {
        return {[](void *self) -> int { return static_cast<TimeLimit *>(self)->isReached(); },
                this};
    }

private:
    const std::chrono::steady_clock::time_point m_end;
};

}
