// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once
#include "platform/ffmpeg/command_line.h"
#include "platform/ffmpeg/input_file.h"

#include <vector>

namespace veltro::ffmpeg {

/// Chooses the input streams that an output is made of, in the output's order: by -map where it is
/// given, otherwise the best of each kind that the output's format can carry.
/// @param muxer the output's format and address.
/// @throws CommandFailed for a map that cannot be met.
[[nodiscard]] std::vector<InputStream *> chooseStreams(const FileArguments &output,
                                                       const AVFormatContext &muxer,
                                                       const InputFiles &inputs,
                                                       const RunContext &run);

}
