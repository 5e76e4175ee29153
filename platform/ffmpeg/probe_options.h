// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once
#include "platform/ffmpeg/probe_report.h"

#include <optional>
#include <span>
#include <string>

struct AVInputFormat;

namespace veltro::ffmpeg {

/// An ffprobe command line, taken apart.
struct ProbeOptions {
    /// What ends the command before a file is looked at.
    struct Ending {
        int code = 0;
        std::string output;  ///< for standard output
        std::string message; ///< for standard error, as an error
    };

    int logLevel = 0; ///< an AV_LOG_ level
    bool hideBanner = false;
    bool showFormat = false;
    bool showStreams = false;
    ReportFormat report = ReportFormat::plain;
    const AVInputFormat *inputFormat = nullptr; ///< recognised from the content when null
    std::string streamSelection;                ///< a stream specifier; empty for all
    std::optional<std::string> input;
    std::optional<Ending> ending;
};

/// Reads the arguments as the tool does, in order; the first mistake or information option decides
/// the ending, while log level and banner are honoured wherever they stand.
[[nodiscard]] ProbeOptions parseProbeOptions(std::span<const std::string> arguments);

}
