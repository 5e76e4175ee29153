// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once
#include <string>
#include <string_view>

namespace veltro::ffmpeg {

/// What the tools say about themselves and the libraries, in the form that their callers take
/// apart by pattern. `program` is "ffmpeg" or "ffprobe".

/// The lines that a tool begins standard error with, unless told -hide_banner.
[[nodiscard]] std::string banner(std::string_view program);
/// The answer to -version, for standard output.
[[nodiscard]] std::string versionText(std::string_view program);
/// The answer to -bsfs, for standard output: a heading, then a bitstream filter a line.
[[nodiscard]] std::string bitstreamFiltersText();

}
