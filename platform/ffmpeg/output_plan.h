// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once
#include "platform/ffmpeg/output_file.h"
#include "platform/ffmpeg/stream_map.h"

namespace veltro::ffmpeg {

/// Gives an output its streams and everything that the command line says of them: codecs, filters,
/// metadata, chapters and dispositions. Nothing is opened or written yet.
/// @throws CommandFailed for what cannot be met.
void planOutput(OutputFile &output, const InputFiles &inputs, const RunContext &run);

}
