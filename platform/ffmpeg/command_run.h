// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once
#include "platform/ffmpeg/command_line.h"
#include "platform/ffmpeg/run_control.h"

namespace veltro::ffmpeg {

/// Does what a command line says, from opening the inputs to closing the outputs. The calling
/// thread becomes the run's thread: it must be bound to the log and to the plain locale, and its
/// priority may be lowered for good.
/// @param encoders what the playback transcode may choose from.
/// @throws CommandFailed, CommandCancelled
void runCommand(const CommandLine &command, SessionLog &log, RunControl &control,
                const H264EncoderList &encoders = knownH264Encoders);

}
