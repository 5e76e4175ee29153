// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/ffmpeg/input_open.h"

#include "platform/ffmpeg/av_error.h"
#include "platform/ffmpeg/safe_input.h"

#include <algorithm>
#include <string>

namespace veltro::ffmpeg {
namespace {

[[noreturn]] void failToOpen(const std::string &url, int error)
{
    std::string text = url + ": " + errorText(error);
    if (error == AVERROR_PROTOCOL_NOT_FOUND) {
        text += "\nDid you mean file:" + url + "?";
    }
    throw CommandFailed(text);
}

const AVInputFormat *formatOf(const FileArguments &arguments)
{
    const auto name = arguments.value("f");
    if (!name) {
        return nullptr;
    }
    const AVInputFormat *format = av_find_input_format(std::string(*name).c_str());
    if (!format) {
        throw CommandFailed("Unknown input format: '" + std::string(*name) + "'");
    }
    return format;
}

// What a demuxer did not take and no codec knows was meant for something else.
void refuseUnused(const LibraryOptions &options)
{
    const AVDictionaryEntry *entry = nullptr;
    while ((entry = av_dict_get(options.format.get(), "", entry, AV_DICT_IGNORE_SUFFIX))) {
        if (!av_dict_get(options.codec.get(), entry->key, nullptr, AV_DICT_MATCH_CASE)) {
            throw CommandFailed("Option " + std::string(entry->key) + " not found.");
        }
    }
}

// A name that may lead anywhere, because the command line says so.
int openGeneral(const std::string &url, const AVInputFormat *format, DictionaryPtr &options,
                const RunContext &run, InputContextPtr &context)
{
    AVFormatContext *input = avformat_alloc_context();
    if (!input) {
        return AVERROR(ENOMEM);
    }
    input->opaque = &run.log;
    input->interrupt_callback = run.control.interrupt();
    input->max_streams = std::min(input->max_streams, maxStreams);
    input->flags |= AVFMT_FLAG_NONBLOCK;
    const int error = avformat_open_input(&input, url.c_str(), format, DictionaryLoan(options));
    if (error >= 0) {
        context.reset(input); // otherwise the call has freed it
    }
    return error;
}

}

InputContextPtr openInput(const FileArguments &arguments, LibraryOptions &options,
                          const RunContext &run)
{
    const std::string &url = arguments.url;
    InputContextPtr context;
    const AVInputFormat *format = formatOf(arguments);
    const InputName name = classifyInput(url);
    if (name.kind == InputKind::standard) {
        throw CommandFailed("Reading from a pipe is not supported by this program");
    }
    if (name.kind == InputKind::localFile && arguments.isOn("re")) {
        throw CommandFailed("Option 're' on a file is not supported by this program");
    }
    // Transport streams say late which programs they have; whoever asks otherwise is obeyed.
    const bool asked =
        av_dict_get(options.format.get(), "scan_all_pmts", nullptr, AV_DICT_MATCH_CASE);
    if (!asked) {
        av_dict_set(DictionaryLoan(options.format), "scan_all_pmts", "1", 0);
    }
    // A playlist is only read from a file when the command says that it is one.
    const bool namesOthers = format && av_match_list(format->name, localDemuxers(), ',') <= 0;
    const bool isGuarded = name.kind == InputKind::localFile && !namesOthers;
    const LocalInputOptions how{format, &options.format, run.control.interrupt(), &run.log};
    const int error = isGuarded ? openLocalInput(url, how, context)
                                : openGeneral(url, format, options.format, run, context);
    if (error < 0) {
        run.control.check();
        failToOpen(url, error);
    }
    if (!asked) {
        av_dict_set(DictionaryLoan(options.format), "scan_all_pmts", nullptr, AV_DICT_MATCH_CASE);
    }
    refuseUnused(options);
    return context;
}

}
