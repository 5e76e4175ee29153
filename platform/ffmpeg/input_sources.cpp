// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/ffmpeg/input_sources.h"

#include "platform/ffmpeg/av_ptr.h"
#include "platform/ffmpeg/safe_input.h"

#include <algorithm>
#include <array>
#include <climits>
#include <filesystem>
#include <fstream>
#include <glob.h>
#include <optional>
#include <span>
#include <sstream>
#include <string_view>
#include <sys/stat.h>

namespace veltro::ffmpeg {
namespace {

std::int64_t numberOf(const AVFormatContext &input, const char *option)
{
    std::int64_t value = 0;
    av_opt_get_int(input.priv_data, option, 0, &value);
    return value;
}

/// Whether the option has the value that the libraries know by this word.
bool isSetTo(const AVFormatContext &input, const char *option, const char *word)
{
    const AVOption *known = av_opt_find(input.priv_data, option, nullptr, 0, 0);
    int value = 0;
    return known && av_opt_eval_int(input.priv_data, known, word, &value) >= 0 &&
           numberOf(input, option) == value;
}

/// Nothing when the pattern has no place for a number.
std::optional<std::string> pictureName(const std::string &pattern, std::int64_t number)
{
    std::array<char, PATH_MAX> name{};
    const int error = av_get_frame_filename(name.data(), static_cast<int>(name.size()),
                                            pattern.c_str(), static_cast<int>(number));
    return error < 0 ? std::nullopt : std::optional(std::string(name.data()));
}

/// What a line of a script of parts names.
std::optional<std::string> partOn(const std::string &line)
{
    constexpr std::string_view keyword = "file";
    constexpr std::string_view blanks = " \t\r";
    const std::size_t begin = std::min(line.find_first_not_of(blanks), line.size());
    const std::size_t end = begin + keyword.size();
    if (line.compare(begin, keyword.size(), keyword) != 0 || end >= line.size() ||
        blanks.find(line[end]) == std::string_view::npos) {
        return std::nullopt;
    }
    const char *rest = line.c_str() + end;
    const AvTextPtr name(av_get_token(&rest, " \t\r"));
    return name ? std::optional(std::string(name.get())) : std::nullopt;
}

}

InputSources::InputSources(const AVFormatContext &input)
{
    constexpr std::string_view chain = "concat:";
    const std::string_view url = input.url;
    const std::string_view format = input.iformat->name;
    if (url.starts_with(chain)) {
        addChain(std::string(url.substr(chain.size())));
        return;
    }
    const InputName name = classifyInput(url);
    if (name.kind != InputKind::localFile) {
        return;
    }
    add(name.path);
    if (format == "image2") {
        addSeries(input, name.path);
    } else if (format == "concat") {
        addParts(name.path);
    }
}

bool InputSources::has(const std::string &path) const
{
    struct stat status = {};
    return stat(path.c_str(), &status) == 0 && m_files.contains({status.st_dev, status.st_ino});
}

bool InputSources::add(const std::string &path)
{
    struct stat status = {};
    if (stat(path.c_str(), &status) != 0) {
        return false;
    }
    m_files.emplace(status.st_dev, status.st_ino);
    return true;
}

void InputSources::addSeries(const AVFormatContext &input, const std::string &pattern)
{
    if (isSetTo(input, "pattern_type", "glob")) {
        addMatching(pattern);
    } else if (!isSetTo(input, "pattern_type", "none")) {
        addNumbered(pattern, numberOf(input, "start_number"),
                    numberOf(input, "start_number_range"));
    }
}

/// The first one may have any of some numbers; where one is missing, reading ends.
void InputSources::addNumbered(const std::string &pattern, std::int64_t first,
                               std::int64_t attempts)
{
    const auto addPicture = [&](std::int64_t number) {
        const std::optional<std::string> name = pictureName(pattern, number);
        return name && add(*name);
    };
    std::int64_t number = first;
    while (number < first + attempts && !addPicture(number)) {
        ++number;
    }
    if (number < first + attempts) {
        while (addPicture(++number)) {}
    }
}

void InputSources::addMatching(const std::string &pattern)
{
    glob_t found = {};
    if (glob(pattern.c_str(), GLOB_NOSORT | GLOB_BRACE, nullptr, &found) == 0) {
        for (const char *const picture : std::span(found.gl_pathv, found.gl_pathc)) {
            add(picture);
        }
    }
    globfree(&found);
}

void InputSources::addParts(const std::string &script)
{
    std::error_code none;
    if (!std::filesystem::is_regular_file(script, none)) {
        return; // what is no file cannot be read twice
    }
    const std::filesystem::path folder = std::filesystem::path(script).parent_path();
    std::ifstream lines(script);
    for (std::string line; std::getline(lines, line);) {
        const std::optional<std::string> part = partOn(line);
        const InputName name = classifyInput(part.value_or(std::string()));
        if (part && name.kind == InputKind::localFile) {
            // A name with its protocol stands for itself; any other is seen from the script.
            add(name.path == *part ? (folder / name.path).string() : name.path);
        }
    }
}

void InputSources::addChain(const std::string &parts)
{
    std::istringstream list(parts);
    for (std::string part; std::getline(list, part, '|');) {
        if (const InputName name = classifyInput(part); name.kind == InputKind::localFile) {
            add(name.path);
        }
    }
}

}
