// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/ffmpeg/command_run.h"

#include "platform/ffmpeg/muxer_files.h"
#include "platform/ffmpeg/output_plan.h"
#include "platform/ffmpeg/playback_transcode.h"
#include "platform/ffmpeg/run_report.h"
#include "platform/ffmpeg/scheduler.h"

#include <algorithm>
#include <sys/resource.h>
#include <unistd.h>

namespace veltro::ffmpeg {
namespace {

// The tool's own code for an input of which hardly anything could be decoded.
constexpr int codeOfDamage = 69;

RunContext makeContext(const CommandLine &command, SessionLog &log, RunControl &control)
{
    RunContext run{log, control};
    run.copiesTimestamps = command.isOn("copyts");
    run.startsAtZero = command.isOn("start_at_zero");
    run.ignoresUnknown = command.isOn("ignore_unknown");
    run.copiesUnknown = command.isOn("copy_unknown");
    run.stopsOnError = command.isOn("xerror");
    run.overwrites = command.isOn("y") && !command.isOn("n");
    if (const auto rate = command.value("max_error_rate")) {
        run.highestErrorRate = parseReal("max_error_rate", std::string(*rate));
    }
    return run;
}

InputFiles openInputs(const CommandLine &command, const RunContext &run)
{
    InputFiles inputs;
    for (const FileArguments &arguments : command.inputs) {
        inputs.push_back(
            std::make_unique<InputFile>(arguments, static_cast<int>(inputs.size()), run));
    }
    return inputs;
}

OutputFiles planOutputs(const CommandLine &command, const InputFiles &inputs, const RunContext &run)
{
    OutputFiles outputs;
    for (const FileArguments &arguments : command.outputs) {
        auto output =
            std::make_unique<OutputFile>(arguments, static_cast<int>(outputs.size()), run);
        planOutput(*output, inputs, run);
        outputs.push_back(std::move(output));
    }
    return outputs;
}

bool encodesPictures(const OutputFiles &outputs)
{
    for (const auto &output : outputs) {
        for (const auto &stream : output->streams()) {
            if (stream->type() == AVMEDIA_TYPE_VIDEO && !stream->isCopied) {
                return true;
            }
        }
    }
    return false;
}

// Minutes of encoding must not make the desktop stutter. Threads that the codecs start take it
// over.
void stepBack()
{
    constexpr int steps = 7;
    const auto thread = static_cast<id_t>(gettid());
    const int usual = getpriority(PRIO_PROCESS, static_cast<id_t>(getpid()));
    setpriority(PRIO_PROCESS, thread, std::max(getpriority(PRIO_PROCESS, thread), usual + steps));
}

void runOnce(const CommandLine &command, const RunContext &run)
{
    const bool replaces =
        std::any_of(command.outputs.begin(), command.outputs.end(), isPlaybackTranscode);
    const InputFiles inputs = openInputs(command, run);
    MuxerFiles muxerFiles(inputs, run.control);
    const OutputFiles outputs = planOutputs(command, inputs, run);
    if (outputs.empty()) {
        throw CommandFailed("At least one output file must be specified");
    }
    reportMapping(outputs, run);
    if (encodesPictures(outputs)) {
        stepBack();
    }
    Scheduler scheduler(inputs, outputs, run);
    scheduler.run();
    if (run.control.isDamaged(run.highestErrorRate)) {
        throw CommandFailed("Too little of the input could be decoded", codeOfDamage);
    }
    if (replaces) {
        refuseShortened(inputs, outputs);
    }
    for (const auto &output : outputs) {
        output->complete();
    }
    muxerFiles.keep();
    reportResult(outputs, run);
}

}

void runCommand(const CommandLine &command, SessionLog &log, RunControl &control,
                const H264EncoderList &encoders)
{
    RunContext run = makeContext(command, log, control);
    run.h264Encoders = encoders;
    if (command.inputs.empty() && command.outputs.empty()) {
        throw CommandFailed("Use -h to get full help or, even better, run 'man ffmpeg'");
    }
    // What a playback transcode makes takes the place of the file that it was made from, so it
    // must not be less than that: damage that a player would skip over is reason enough to stop.
    run.stopsOnError = run.stopsOnError || std::any_of(command.outputs.begin(),
                                                       command.outputs.end(), isPlaybackTranscode);
    try {
        runOnce(command, run);
    } catch (const HardwareFailed &failure) {
        run.warn(failure.what());
        run.warn("The hardware encoder has failed: once more in software");
        run.avoidsHardware = true;
        control.startAgain();
        runOnce(command, run);
    }
}

}
