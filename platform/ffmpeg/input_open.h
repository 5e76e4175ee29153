// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once
#include "platform/ffmpeg/av_ptr.h"
#include "platform/ffmpeg/command_line.h"
#include "platform/ffmpeg/library_options.h"
#include "platform/ffmpeg/run_control.h"

namespace veltro::ffmpeg {

/// Opens the demuxer of an input, whose streams are not looked into yet. What lies in a local file
/// can name no other file, unless the command line itself says that it is a list of such.
/// @param options what the demuxer takes of them is taken out.
/// @throws CommandFailed in the tool's words.
[[nodiscard]] InputContextPtr openInput(const FileArguments &arguments, LibraryOptions &options,
                                        const RunContext &run);

}
