// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once
#include "platform/ffmpeg/input_file.h"
#include "platform/ffmpeg/output_file.h"

#include <memory>

namespace veltro::ffmpeg {

/// What becomes of one input stream's packets on their way to one output stream. The scheduler
/// knows paths by this alone; what they do on threads of their own is theirs. The run's thread.
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

/// The way of a stream's packets, as its plan says: copied, converted, or text to text. One that
/// copies opens the output when it is the last of its streams.
/// @throws CommandFailed
[[nodiscard]] std::unique_ptr<StreamPath>
makeStreamPath(InputFile &input, OutputFile &output, OutputStream &stream, const RunContext &run);

}
