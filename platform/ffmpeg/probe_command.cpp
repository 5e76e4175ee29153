// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/ffmpeg/probe_command.h"

#include "platform/ffmpeg/av_error.h"
#include "platform/ffmpeg/information.h"
#include "platform/ffmpeg/locale_scope.h"
#include "platform/ffmpeg/probe_fields.h"
#include "platform/ffmpeg/probe_options.h"
#include "platform/ffmpeg/safe_input.h"
#include "platform/ffmpeg/session_log.h"

#include <exception>
#include <utility>
#include <vector>

namespace veltro::ffmpeg {
namespace {

int openProbed(const std::string &name, const ProbeOptions &options, SessionLog &log,
               InputContextPtr &input)
{
    if (classifyInput(name).kind != InputKind::localFile) {
        return AVERROR_PROTOCOL_NOT_FOUND; // local files are all that is probed
    }
    LocalInputOptions how;
    how.format = options.inputFormat;
    how.log = &log;
    if (const int error = openLocalInput(name, how, input); error < 0) {
        return error;
    }
    if (const int error = readStreamInformation(*input); error < 0) {
        return error;
    }
    // A stream specifier is only checked against a stream.
    return input->nb_streams == 0
               ? 0
               : avformat_match_stream_specifier(input.get(), input->streams[0],
                                                 options.streamSelection.c_str());
}

int probeFile(const ProbeOptions &options, SessionLog &log, std::string &output)
{
    const std::string &name = *options.input;
    InputContextPtr input;
    std::vector<ReportSection> sections;
    const int error = openProbed(name, options, log, input);
    if (error < 0) {
        log.write(AV_LOG_ERROR, name + ": " + errorText(error) + "\n");
    } else {
        av_dump_format(input.get(), 0, name.c_str(), 0);
        if (options.showStreams) {
            sections.push_back(describeStreams(*input, options.streamSelection));
        }
        if (options.showFormat) {
            sections.push_back(describeFormat(*input));
        }
    }
    output = writeReport(sections, options.report);
    return error < 0 ? 1 : 0;
}

}

CommandResult runProbeCommand(std::span<const std::string> arguments) noexcept
try {
    const LocaleScope locale;
    SessionLog log;
    const SessionLog::Scope bound(log);
    ProbeOptions options = parseProbeOptions(arguments);
    log.setLevel(options.logLevel);
    if (!options.hideBanner) {
        log.write(AV_LOG_INFO, banner("ffprobe"));
    }
    CommandResult result;
    if (options.ending) {
        log.write(AV_LOG_ERROR, options.ending->message);
        result.code = options.ending->code;
        result.output = std::move(options.ending->output);
    } else {
        result.code = probeFile(options, log, result.output);
    }
    result.log = log.text();
    return result;
} catch (const std::exception &) {
    CommandResult failed;
    failed.code = 1;
    return failed;
}

}
