// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once
#include "platform/ffmpeg/output_file.h"
#include "platform/ffmpeg/stream_map.h"

namespace veltro::ffmpeg {

/// Gives an output its tags, chapters and dispositions: what the command line says, else what the
/// inputs have. Its streams must all be there.
/// @throws CommandFailed for what names nothing.
void describeOutput(OutputFile &output, const InputFiles &inputs);

}
