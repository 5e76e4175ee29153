// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace veltro::ffmpeg {

/// One option as it was given, under its canonical name.
struct GivenOption {
    std::string name;
    std::string specifier; ///< the text after the first colon; empty for every stream
    std::string value;     ///< "1" or "0" for a flag
    bool operator==(const GivenOption &) const = default;
};

/// One input or output and what was said of it, in the order given.
struct FileArguments {
    std::string url;
    std::vector<GivenOption> options;
    std::vector<GivenOption> libraryOptions; ///< names of the libraries, for codec or format
    bool operator==(const FileArguments &) const = default;

    /// The value given last; nothing when it was not given.
    [[nodiscard]] std::optional<std::string_view> value(std::string_view name) const;
    [[nodiscard]] bool isOn(std::string_view flagName) const;
};

/// A whole ffmpeg command line, understood but not yet judged against any file.
struct CommandLine {
    std::vector<GivenOption> options; ///< those of the whole run
    std::vector<FileArguments> inputs;
    std::vector<FileArguments> outputs;
    std::string information; ///< "version" or "bsfs" when such an option was given

    [[nodiscard]] std::optional<std::string_view> value(std::string_view name) const;
    [[nodiscard]] bool isOn(std::string_view flagName) const;
};

/// Says whether the libraries know an option by this name (a specifier may follow it).
using LibraryOptionTest = std::function<bool(std::string_view written)>;

/// Splits a command line by the table of options. Opens nothing.
/// @throws CommandFailed in the tool's words.
[[nodiscard]] CommandLine parseCommandLine(std::span<const std::string> arguments,
                                           const LibraryOptionTest &isLibraryOption);

}
