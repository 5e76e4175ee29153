// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/ffmpeg/stream_probe.h"

#include "platform/ffmpeg/file_look.h"
#include "platform/ffmpeg/safe_input.h"

#include <algorithm>
#include <exception>
#include <span>

namespace veltro::ffmpeg {
namespace {

// A file that does not tell its streams by then is made not to.
constexpr std::chrono::seconds longestProbe(60);

bool lacksCodec(const AVStream *stream)
{
    switch (stream->codecpar->codec_type) {
    case AVMEDIA_TYPE_DATA:
    case AVMEDIA_TYPE_ATTACHMENT:
    case AVMEDIA_TYPE_NB:
        return false; // reading on would not tell
    case AVMEDIA_TYPE_UNKNOWN:
    case AVMEDIA_TYPE_VIDEO:
    case AVMEDIA_TYPE_AUDIO:
    case AVMEDIA_TYPE_SUBTITLE:
        break;
    }
    const AVCodecID codec = stream->codecpar->codec_id;
    return codec == AV_CODEC_ID_NONE || codec == AV_CODEC_ID_PROBE;
}

bool mustReadOn(const AVFormatContext &input)
{
    const std::span<AVStream *const> streams(input.streams, input.nb_streams);
    return (input.ctx_flags & AVFMTCTX_NOHEADER) != 0 || std::ranges::any_of(streams, lacksCodec);
}

StreamInformation informationOf(const AVStream &stream)
{
    const AVCodecParameters &codec = *stream.codecpar;
    const char *type = av_get_media_type_string(codec.codec_type);
    const AVCodecDescriptor *known = avcodec_descriptor_get(codec.codec_id);
    return {
        .type = type ? type : "data",
        .codec = known ? known->name : "",
        .isAttachedPicture = (stream.disposition & AV_DISPOSITION_ATTACHED_PIC) != 0,
    };
}

}

std::optional<std::vector<StreamInformation>>
probeStreams(const std::filesystem::path &file) noexcept
try {
    const FileLook look(file, longestProbe);
    AVFormatContext *input = look.input();
    if (!input) {
        return std::nullopt;
    }
    if (mustReadOn(*input) && readStreamInformation(*input) < 0) {
        return std::nullopt;
    }
    std::vector<StreamInformation> streams;
    streams.reserve(input->nb_streams);
    for (const AVStream *stream : std::span<AVStream *const>(input->streams, input->nb_streams)) {
        streams.push_back(informationOf(*stream));
    }
    return streams;
} catch (const std::exception &) {
    return std::nullopt; // out of memory: as good as unreadable
}

}
