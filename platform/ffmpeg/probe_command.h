// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once
#include "platform/ffmpeg/media_tools.h"

#include <span>
#include <string>

namespace veltro::ffmpeg {

/// Runs an ffprobe command line on a local file: the options that are known to be asked of the
/// tool, with its output, its messages and its code (0 or 1). Never throws; any thread.
[[nodiscard]] CommandResult runProbeCommand(std::span<const std::string> arguments) noexcept;

}
