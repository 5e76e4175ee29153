// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/ffmpeg/run_report.h"

#include "platform/ffmpeg/input_file.h"

#include <cstdint>
#include <string>

namespace veltro::ffmpeg {
namespace {

std::string numberedPair(int file, int stream)
{
    return "#" + std::to_string(file) + ":" + std::to_string(stream);
}

// "vp9 (native)", "opus (libopus)": the format, and who handles it.
std::string codecText(const AVCodec *codec)
{
    if (!codec) {
        return "? (?)";
    }
    const std::string format = avcodec_get_name(codec->id);
    return format + " (" + (format == codec->name ? "native" : codec->name) + ")";
}

std::string kilobytes(std::int64_t bytes)
{
    return std::to_string((bytes + 512) / 1024) + "kB";
}

}

void reportMapping(const OutputFiles &outputs, const RunContext &run)
{
    run.info("Stream mapping:");
    for (const auto &output : outputs) {
        for (const auto &stream : output->streams()) {
            if (!stream->source) {
                continue;
            }
            const InputStream &source = *stream->source;
            const std::string how = stream->isCopied ? "(copy)"
                                                     : "(" + codecText(source.decoder) + " -> " +
                                                           codecText(stream->encode.encoder) + ")";
            run.info("  Stream " + numberedPair(source.fileIndex, source.stream->index) + " -> " +
                     numberedPair(output->index(), stream->stream->index) + " " + how);
        }
    }
}

void reportResult(const OutputFiles &outputs, const RunContext &run)
{
    std::int64_t video = 0;
    std::int64_t audio = 0;
    std::int64_t subtitle = 0;
    std::int64_t other = 0;
    std::int64_t headers = 0;
    for (const auto &output : outputs) {
        for (const auto &stream : output->streams()) {
            const AVMediaType type = stream->type();
            (type == AVMEDIA_TYPE_VIDEO      ? video
             : type == AVMEDIA_TYPE_AUDIO    ? audio
             : type == AVMEDIA_TYPE_SUBTITLE ? subtitle
                                             : other) += stream->bytes;
            headers += stream->stream->codecpar->extradata_size;
        }
    }
    run.info("video:" + kilobytes(video) + " audio:" + kilobytes(audio) +
             " subtitle:" + kilobytes(subtitle) + " other streams:" + kilobytes(other) +
             " global headers:" + kilobytes(headers));
    if (video + audio + subtitle + other == 0) {
        run.warn("Output file is empty, nothing was encoded (check -ss / -t / -frames parameters "
                 "if used)");
    }
}

}
