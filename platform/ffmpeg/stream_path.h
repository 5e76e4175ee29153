// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once
#include "platform/ffmpeg/libav.h"

namespace veltro::ffmpeg {

/// What becomes of one input stream's packets on their way to one output stream. The scheduler
/// knows paths by this alone. The run's thread.
class StreamPath {
public:
    virtual ~StreamPath() = default;
    /// A packet of the input stream, in its time base; it stays the caller's.
    /// @throws CommandFailed
    virtual void accept(const AVPacket &packet) = 0;
    /// No more packets come: what is held back is written.
    /// @throws CommandFailed
    virtual void finish() = 0;
};

}
