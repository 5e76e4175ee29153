// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/ffmpeg/command_line.h"

#include "platform/ffmpeg/command_failed.h"
#include "platform/ffmpeg/option_table.h"

#include <algorithm>
#include <utility>

namespace veltro::ffmpeg {
namespace {

std::optional<std::string_view> lastValue(const std::vector<GivenOption> &options,
                                          std::string_view name)
{
    const auto found = std::find_if(options.rbegin(), options.rend(),
                                    [name](const auto &option) { return option.name == name; });
    if (found == options.rend()) {
        return std::nullopt;
    }
    return found->value;
}

bool isFlagOn(const std::vector<GivenOption> &options, std::string_view name)
{
    return lastValue(options, name).value_or("0") != "0";
}

std::string_view specifierOf(std::string_view written)
{
    const auto colon = written.find(':');
    return colon == std::string_view::npos ? std::string_view() : written.substr(colon + 1);
}

class Parser {
public:
    Parser(std::span<const std::string> arguments, const LibraryOptionTest &isLibraryOption)
        : m_arguments(arguments), m_isLibraryOption(isLibraryOption)
    {}

    CommandLine parse()
    {
        bool isName = false; // after "--" the next argument is a name whatever it looks like
        while (m_next < m_arguments.size()) {
            const std::string &argument = m_arguments[m_next++];
            if (!isName && argument == "--") {
                isName = true;
            } else if (isName || !argument.starts_with('-') || argument.size() == 1) {
                finishFile(m_result.outputs, argument);
                isName = false;
            } else {
                option(argument.substr(1));
            }
        }
        for (const FileArguments &input : m_result.inputs) {
            checkScopes(input, forInput);
        }
        for (const FileArguments &output : m_result.outputs) {
            checkScopes(output, forOutput);
        }
        return std::move(m_result);
    }

private:
    void option(const std::string &written)
    {
        if (written == "i") {
            finishFile(m_result.inputs, nextArgument(written));
            return;
        }
        if (const OptionRule *rule = findOptionRule(written)) {
            known(*rule, written);
        } else if (m_isLibraryOption(written)) {
            const std::string name = written.substr(0, written.find(':'));
            m_pending.libraryOptions.push_back(
                {name, std::string(specifierOf(written)), nextArgument(written)});
        } else if (const OptionRule *positive = negated(written)) {
            keep(*positive, written, "0");
        } else {
            throw CommandFailed("Unrecognized option '" + written +
                                "'.\nError splitting the argument list: Option not found");
        }
    }

    static const OptionRule *negated(std::string_view written)
    {
        if (!written.starts_with("no")) {
            return nullptr;
        }
        const OptionRule *rule = findOptionRule(written.substr(2));
        return rule && rule->shape == OptionShape::flag ? rule : nullptr;
    }

    void known(const OptionRule &rule, const std::string &written)
    {
        if (!rule.takesSpecifier && written.size() > rule.name.size()) {
            throw CommandFailed("Unrecognized option '" + written +
                                "'.\nError splitting the argument list: Option not found");
        }
        const bool hasValue = rule.shape == OptionShape::value;
        keep(rule, written, hasValue ? nextArgument(written) : std::string("1"));
    }

    void keep(const OptionRule &rule, const std::string &written, std::string value)
    {
        switch (rule.use) {
        case OptionUse::ignore:
            return;
        case OptionUse::refuse:
            throw CommandFailed("Option '" + written + "' is not supported by this program");
        case OptionUse::information:
            m_result.information = rule.name;
            return;
        case OptionUse::accept:
        case OptionUse::library:
            break;
        }
        const std::string_view said = specifierOf(written);
        GivenOption given{std::string(rule.canonical),
                          std::string(said.empty() ? rule.specifier : said), std::move(value)};
        if (rule.use == OptionUse::library) {
            m_pending.libraryOptions.push_back(std::move(given));
        } else if (rule.scope == forCommand) {
            m_result.options.push_back(std::move(given));
        } else {
            m_pending.options.push_back(std::move(given));
        }
    }

    std::string nextArgument(const std::string &written)
    {
        if (m_next == m_arguments.size()) {
            throw CommandFailed("Missing argument for option '" + written +
                                "'.\nError splitting the argument list: Invalid argument");
        }
        return m_arguments[m_next++];
    }

    void finishFile(std::vector<FileArguments> &files, std::string url)
    {
        m_pending.url = std::move(url);
        files.push_back(std::exchange(m_pending, {}));
    }

    static void checkScopes(const FileArguments &file, OptionScope scope)
    {
        const std::string kind = scope == forInput ? "input" : "output";
        for (const GivenOption &given : file.options) {
            const OptionRule *rule = findOptionRule(given.name);
            if (!rule || (rule->scope & scope)) {
                continue;
            }
            refuseScope(given.name, kind, file.url);
        }
    }

    [[noreturn]] static void refuseScope(const std::string &option, const std::string &kind,
                                         const std::string &url)
    {
        throw CommandFailed(
            "Option " + option + " cannot be applied to " + kind + " url " + url +
            " -- you are trying to apply an input option to an output file or vice versa. "
            "Move this option before the file it belongs to.\n"
            "Error parsing options for " +
            kind + " file " + url + ".\nError opening " + kind + " files: Invalid argument");
    }

    const std::span<const std::string> m_arguments;
    const LibraryOptionTest &m_isLibraryOption;
    std::size_t m_next = 0;
    FileArguments m_pending; // what stands before the next file's name
    CommandLine m_result;
};

}

std::optional<std::string_view> FileArguments::value(std::string_view name) const
{
    return lastValue(options, name);
}

bool FileArguments::isOn(std::string_view flagName) const
{
    return isFlagOn(options, flagName);
}

std::optional<std::string_view> CommandLine::value(std::string_view name) const
{
    return lastValue(options, name);
}

bool CommandLine::isOn(std::string_view flagName) const
{
    return isFlagOn(options, flagName);
}

CommandLine parseCommandLine(std::span<const std::string> arguments,
                             const LibraryOptionTest &isLibraryOption)
{
    return Parser(arguments, isLibraryOption).parse();
}

}
