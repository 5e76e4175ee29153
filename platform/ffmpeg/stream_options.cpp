// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/ffmpeg/stream_options.h"

#include "platform/ffmpeg/command_failed.h"
#include "platform/ffmpeg/libav_versions.h"

#include <cmath>
#include <limits>

namespace veltro::ffmpeg {
namespace {

double parseNumber(std::string_view option, const std::string &text)
{
    char *end = nullptr;
    const double number = av_strtod(text.c_str(), &end);
    if (*end || end == text.c_str()) {
        throw CommandFailed("Expected number for " + std::string(option) + " but found: " + text);
    }
    return number;
}

std::optional<std::int64_t> durationOf(const FileArguments &file, std::string_view name)
{
    const auto text = file.value(name);
    if (!text) {
        return std::nullopt;
    }
    return parseDuration(name, std::string(*text));
}

}

bool matchesStream(AVFormatContext *file, AVStream *stream, const std::string &specifier)
{
    const int result = avformat_match_stream_specifier(file, stream, specifier.c_str());
    if (result < 0) {
        throw CommandFailed("Invalid stream specifier: " + specifier + ".");
    }
    return result > 0;
}

std::optional<std::string> streamValue(const FileArguments &file, std::string_view name,
                                       AVFormatContext *context, AVStream *stream)
{
    std::optional<std::string> value;
    for (const GivenOption &given : file.options) {
        if (given.name == name && matchesStream(context, stream, given.specifier)) {
            value = given.value;
        }
    }
    return value;
}

std::optional<std::string> codecNameFor(const FileArguments &file, std::string_view kind)
{
    std::optional<std::string> name;
    for (const GivenOption &given : file.options) {
        if (given.name == "c" && given.specifier == kind) {
            name = given.value;
        }
    }
    return name;
}

std::int64_t parseDuration(std::string_view option, const std::string &text)
{
    std::int64_t microseconds = 0;
    if (av_parse_time(&microseconds, text.c_str(), 1) < 0) {
        throw CommandFailed("Invalid duration specification for " + std::string(option) + ": " +
                            text);
    }
    return microseconds;
}

std::int64_t parseInteger(std::string_view option, const std::string &text, std::int64_t lowest,
                          std::int64_t highest)
{
    const double number = parseNumber(option, text);
    if (number < static_cast<double>(lowest) || number > static_cast<double>(highest)) {
        throw CommandFailed("The value for " + std::string(option) + " was " + text +
                            " which is not within " + std::to_string(lowest) + " - " +
                            std::to_string(highest));
    }
    // The highest integers have no exact real number, and casting the next one is undefined.
    if (number >= static_cast<double>(std::numeric_limits<std::int64_t>::max())) {
        return highest;
    }
    const auto integer = static_cast<std::int64_t>(number);
    if (static_cast<double>(integer) != number) {
        throw CommandFailed("Expected int64 for " + std::string(option) + " but found " + text);
    }
    return integer;
}

double parseReal(std::string_view option, const std::string &text)
{
    const double number = parseNumber(option, text);
    if (!std::isfinite(number)) {
        throw CommandFailed("Expected number for " + std::string(option) + " but found: " + text);
    }
    return number;
}

TimeRange timeRangeOf(const FileArguments &file)
{
    TimeRange range{durationOf(file, "ss"), durationOf(file, "t")};
    const auto stop = durationOf(file, "to");
    if (stop && !range.duration) {
        if (*stop <= range.start.value_or(0)) {
            throw CommandFailed("-to value smaller than -ss; aborting.");
        }
        range.duration = *stop - range.start.value_or(0);
    }
    return range;
}

}
