// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/ffmpeg/probe_options.h"

#include "platform/ffmpeg/information.h"
#include "platform/ffmpeg/libav.h"
#include "platform/ffmpeg/session_log.h"

#include <algorithm>
#include <array>
#include <string_view>
#include <utility>

namespace veltro::ffmpeg {
namespace {

enum class ProbeOption {
    showFormat,
    showStreams,
    hideBanner,
    reportFormat,
    logLevel,
    input,
    inputFormat,
    selectStreams,
    version,
    bitstreamFilters,
};

struct KnownProbeOption {
    std::string_view name;
    ProbeOption option;
    bool hasValue;
};

constexpr std::array<KnownProbeOption, 12> knownProbeOptions{{
    {"show_format", ProbeOption::showFormat, false},
    {"show_streams", ProbeOption::showStreams, false},
    {"hide_banner", ProbeOption::hideBanner, false},
    {"print_format", ProbeOption::reportFormat, true},
    {"of", ProbeOption::reportFormat, true},
    {"loglevel", ProbeOption::logLevel, true},
    {"v", ProbeOption::logLevel, true},
    {"i", ProbeOption::input, true},
    {"f", ProbeOption::inputFormat, true},
    {"select_streams", ProbeOption::selectStreams, true},
    {"version", ProbeOption::version, false},
    {"bsfs", ProbeOption::bitstreamFilters, false},
}};

const KnownProbeOption *findProbeOption(std::string_view name)
{
    const auto *found =
        std::find_if(knownProbeOptions.begin(), knownProbeOptions.end(),
                     [&](const KnownProbeOption &known) { return known.name == name; });
    return found == knownProbeOptions.end() ? nullptr : found;
}

class ProbeArguments {
public:
    ProbeOptions parse(std::span<const std::string> arguments)
    {
        m_options.logLevel = AV_LOG_INFO;
        bool optionsMayFollow = true;
        while (!arguments.empty()) {
            const std::string &argument = arguments.front();
            arguments = arguments.subspan(1);
            if (!optionsMayFollow || argument.size() < 2 || argument.front() != '-') {
                takeInput(argument);
            } else if (argument == "--") {
                optionsMayFollow = false;
            } else if (takeOption(std::string_view(argument).substr(1), arguments)) {
                arguments = arguments.subspan(1);
            }
        }
        requireInput();
        return std::move(m_options);
    }

private:
    void end(int code, std::string message, std::string output = {})
    {
        if (!m_options.ending) {
            m_options.ending = {code, std::move(output), std::move(message)};
        }
    }

    // Returns whether the option's value was among the arguments.
    bool takeOption(std::string_view name, std::span<const std::string> rest)
    {
        const KnownProbeOption *known = findProbeOption(name);
        if (known && !known->hasValue) {
            apply(known->option, name, {});
            return false;
        }
        if (rest.empty()) {
            end(1, "Missing argument for option '" + std::string(name) + "'\n");
            return false;
        }
        if (known) {
            apply(known->option, name, rest.front());
        } else {
            refuseValue(name, rest.front(), "Option not found");
        }
        return true;
    }

    void apply(ProbeOption option, std::string_view name, const std::string &value)
    {
        switch (option) {
        case ProbeOption::showFormat:
            m_options.showFormat = true;
            return;
        case ProbeOption::showStreams:
            m_options.showStreams = true;
            return;
        case ProbeOption::hideBanner:
            m_options.hideBanner = true;
            return;
        case ProbeOption::reportFormat:
            setReportFormat(value);
            return;
        case ProbeOption::logLevel:
            setLogLevel(value);
            return;
        case ProbeOption::input:
            takeInput(value);
            return;
        case ProbeOption::inputFormat:
            m_options.inputFormat = av_find_input_format(value.c_str());
            if (!m_options.inputFormat) {
                refuseValue(name, value, "Invalid argument");
            }
            return;
        case ProbeOption::selectStreams:
            m_options.streamSelection = value;
            return;
        case ProbeOption::version:
            m_options.hideBanner = true;
            end(0, {}, versionText("ffprobe"));
            return;
        case ProbeOption::bitstreamFilters:
            end(0, {}, bitstreamFiltersText());
            return;
        }
    }

    void refuseValue(std::string_view name, const std::string &value, const char *why)
    {
        end(1, "Failed to set value '" + value + "' for option '" + std::string(name) +
                   "': " + why + "\n");
    }

    void setReportFormat(const std::string &name)
    {
        if (name == "json") {
            m_options.report = ReportFormat::json;
        } else if (name == "default") {
            m_options.report = ReportFormat::plain;
        } else {
            end(1, "Unknown output format with name '" + name + "'\n");
        }
    }

    void setLogLevel(const std::string &value)
    {
        if (const auto level = parseLogLevel(value, m_options.logLevel)) {
            m_options.logLevel = *level;
        } else {
            end(1, "Invalid loglevel \"" + value + "\".\n");
        }
    }

    void takeInput(const std::string &name)
    {
        if (m_options.input) {
            end(1, "Argument '" + name + "' provided as input filename, but '" + *m_options.input +
                       "' was already specified.\n");
            return;
        }
        m_options.input = name;
    }

    void requireInput()
    {
        if (!m_options.input) {
            end(1, "You have to specify one input file.\n");
        }
    }

    ProbeOptions m_options;
};

}

ProbeOptions parseProbeOptions(std::span<const std::string> arguments)
{
    return ProbeArguments().parse(arguments);
}

}
