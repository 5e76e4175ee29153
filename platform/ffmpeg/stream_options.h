// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once
#include "platform/ffmpeg/av_ptr.h"
#include "platform/ffmpeg/command_line.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace veltro::ffmpeg {

/// Whether a stream specifier ("a:0", "s", "3", "") names this stream of the file.
/// @throws CommandFailed for a specifier that cannot be read.
[[nodiscard]] bool matchesStream(AVFormatContext *file, AVStream *stream,
                                 const std::string &specifier);

/// The last value that was given for this stream by an option that takes a specifier.
[[nodiscard]] std::optional<std::string> streamValue(const FileArguments &file,
                                                     std::string_view name,
                                                     AVFormatContext *context, AVStream *stream);

/// The codec that was named for all streams of one kind ("v", "a", "s"), without a file at hand.
[[nodiscard]] std::optional<std::string> codecNameFor(const FileArguments &file,
                                                      std::string_view kind);

/// Reads "12.5", "00:01:02" or "200ms" to microseconds.
/// @throws CommandFailed in the tool's words.
[[nodiscard]] std::int64_t parseDuration(std::string_view option, const std::string &text);
/// @throws CommandFailed in the tool's words, also for a number outside the limits.
[[nodiscard]] std::int64_t parseInteger(std::string_view option, const std::string &text,
                                        std::int64_t lowest, std::int64_t highest);
[[nodiscard]] double parseReal(std::string_view option, const std::string &text);

/// Where a file begins and how much of it is taken, in microseconds; -to and -t are settled.
struct TimeRange {
    std::optional<std::int64_t> start;
    std::optional<std::int64_t> duration;
};
[[nodiscard]] TimeRange timeRangeOf(const FileArguments &file);

}
