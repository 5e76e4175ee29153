// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/ffmpeg/stream_map.h"

#include "platform/ffmpeg/codec_names.h"
#include "platform/ffmpeg/libav_versions.h"

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <string>

namespace veltro::ffmpeg {
namespace {

using Chosen = std::vector<InputStream *>;

/// "-1:a:0?" taken apart.
struct MapText {
    bool isNegative = false;
    bool mayBeEmpty = false;
    std::size_t file = 0;
    std::string specifier;
};

MapText parseMap(std::string text, std::size_t inputCount)
{
    MapText map;
    if (text.starts_with('[')) {
        throw CommandFailed("Option 'map' with a filter's label is not supported by this program");
    }
    if (text.starts_with('-')) {
        map.isNegative = true;
        text.erase(0, 1);
    }
    text.erase(std::min(text.find(','), text.size())); // the stream to keep time with: our default
    if (const auto mark = text.find('?'); mark != std::string::npos) {
        map.mayBeEmpty = true;
        text.erase(mark);
    }
    int file = 0;
    const auto parsed = std::from_chars(text.data(), text.data() + text.size(), file);
    if (file < 0 || static_cast<std::size_t>(file) >= inputCount) {
        throw CommandFailed("Invalid input file index: " + std::to_string(file) + ".");
    }
    map.file = static_cast<std::size_t>(file);
    map.specifier = text.substr(static_cast<std::size_t>(parsed.ptr - text.data()));
    if (map.specifier.starts_with(':')) {
        map.specifier.erase(0, 1);
    }
    return map;
}

// A specifier that cannot be read is told, and names nothing: what follows from that is said last.
bool isMapped(const MapText &map, const InputStream &stream, const RunContext &run)
{
    const int answer =
        avformat_match_stream_specifier(stream.file, stream.stream, map.specifier.c_str());
    if (answer < 0) {
        run.error("Invalid stream specifier: " + map.specifier + ".");
    }
    return answer > 0;
}

void addMapped(const MapText &map, const std::string &written, InputFile &file,
               const RunContext &run, Chosen &chosen)
{
    bool anyDisabled = false;
    bool any = false;
    for (InputStream &stream : file.streams()) {
        if (!isMapped(map, stream, run)) {
            continue;
        }
        anyDisabled = anyDisabled || stream.isDisabled;
        if (!stream.isDisabled) {
            chosen.push_back(&stream);
            any = true;
        }
    }
    if (!any && !map.mayBeEmpty) {
        throw CommandFailed("Stream map '" + written + "' matches " +
                            (anyDisabled ? "disabled streams" : "no streams") +
                            ".\nTo ignore this, add a trailing '?' to the map.");
    }
}

Chosen chooseMapped(const FileArguments &output, const InputFiles &inputs, const RunContext &run)
{
    Chosen chosen;
    for (const GivenOption &given : output.options) {
        if (given.name != "map") {
            continue;
        }
        const MapText map = parseMap(given.value, inputs.size());
        InputFile &file = *inputs[map.file];
        if (!map.isNegative) {
            addMapped(map, given.value, file, run, chosen);
            continue;
        }
        // Negative maps take away what earlier maps have chosen. The tool refuses one that is
        // written before any other map.
        if (chosen.empty() && !map.mayBeEmpty) {
            throw CommandFailed("Stream map '" + given.value.substr(1) +
                                "' matches no streams.\nTo ignore this, add a trailing '?' to the "
                                "map.");
        }
        std::erase_if(chosen, [&](const InputStream *stream) {
            return stream->file == file.context() && isMapped(map, *stream, run);
        });
    }
    return chosen;
}

bool isWanted(const FileArguments &output, AVMediaType type)
{
    switch (type) {
    case AVMEDIA_TYPE_VIDEO:
        return !output.isOn("vn");
    case AVMEDIA_TYPE_AUDIO:
        return !output.isOn("an");
    case AVMEDIA_TYPE_SUBTITLE:
        return !output.isOn("sn");
    case AVMEDIA_TYPE_DATA:
        return !output.isOn("dn");
    default:
        return true;
    }
}

void dropUnwanted(const FileArguments &output, const RunContext &run, Chosen &chosen)
{
    std::erase_if(chosen, [&](const InputStream *stream) {
        if (!isWanted(output, stream->type())) {
            return true;
        }
        if (stream->type() != AVMEDIA_TYPE_UNKNOWN || run.copiesUnknown) {
            return false;
        }
        const std::string text = "Cannot map stream #" + std::to_string(stream->fileIndex) + ":" +
                                 std::to_string(stream->stream->index) + " - unsupported type.";
        if (!run.ignoresUnknown) {
            throw CommandFailed(
                text + "\nIf you want unsupported types ignored instead of failing, please use the "
                       "-ignore_unknown option\nIf you want them copied, please use -copy_unknown");
        }
        run.warn(text);
        return true;
    });
}

// The worth of a stream among those of its kind; 0 for none at all. Streams that have sent
// something stand before those that are only announced.
std::int64_t scoreOf(const InputStream &stream, bool wantsPictures)
{
    constexpr std::int64_t alive = 100'000'000;
    constexpr std::int64_t isDefault = 5'000'000;
    const AVCodecParameters &codec = *stream.stream->codecpar;
    if (stream.type() == AVMEDIA_TYPE_VIDEO && stream.isPicture() != wantsPictures) {
        return wantsPictures ? 0 : 1;
    }
    std::int64_t score = stream.type() == AVMEDIA_TYPE_VIDEO
                             ? std::int64_t{codec.width} * codec.height
                             : codec.ch_layout.nb_channels;
    score += stream.stream->event_flags & AVSTREAM_EVENT_FLAG_NEW_PACKETS ? alive : 0;
    score += stream.stream->disposition & AV_DISPOSITION_DEFAULT ? isDefault : 0;
    return score;
}

// The largest picture or the most channels. Within a file its default stream has precedence, but
// that says nothing against the streams of another file.
InputStream *bestOf(AVMediaType type, const InputFiles &inputs, bool wantsPictures)
{
    constexpr std::int64_t isDefault = 5'000'000;
    InputStream *best = nullptr;
    std::int64_t bestScore = 0;
    for (const auto &file : inputs) {
        InputStream *bestInFile = nullptr;
        std::int64_t scoreInFile = 0;
        for (InputStream &stream : file->streams()) {
            if (stream.type() != type || stream.isDisabled) {
                continue;
            }
            if (const std::int64_t score = scoreOf(stream, wantsPictures); score > scoreInFile) {
                scoreInFile = score;
                bestInFile = &stream;
            }
        }
        if (bestInFile && bestInFile->stream->disposition & AV_DISPOSITION_DEFAULT &&
            scoreInFile > isDefault) {
            scoreInFile -= isDefault;
        }
        if (scoreInFile > bestScore) {
            bestScore = scoreInFile;
            best = bestInFile;
        }
    }
    return best;
}

bool isSubtitleFit(const InputStream &stream, const AVCodec *encoder)
{
    if (!encoder) {
        return true; // a codec is named for subtitles, so the user wants them
    }
    const AVCodecDescriptor *from = avcodec_descriptor_get(stream.stream->codecpar->codec_id);
    const AVCodecDescriptor *to = avcodec_descriptor_get(encoder->id);
    return (subtitleKind(stream.stream->codecpar->codec_id) & subtitleKind(encoder->id)) ||
           (from && to && (!from->props || !to->props));
}

InputStream *firstSubtitle(const FileArguments &output, const AVOutputFormat &format,
                           const InputFiles &inputs)
{
    const bool isNamed = codecNameFor(output, "s").has_value();
    const AVCodec *encoder = avcodec_find_encoder(format.subtitle_codec);
    if (!isNamed && !encoder) {
        return nullptr;
    }
    for (const auto &file : inputs) {
        for (InputStream &stream : file->streams()) {
            if (stream.type() == AVMEDIA_TYPE_SUBTITLE && !stream.isDisabled &&
                isSubtitleFit(stream, isNamed ? nullptr : encoder)) {
                return &stream;
            }
        }
    }
    return nullptr;
}

bool hasDefaultCodec(const AVFormatContext &muxer, AVMediaType type)
{
    return av_guess_codec(muxer.oformat, nullptr, muxer.url, nullptr, type) != AV_CODEC_ID_NONE;
}

Chosen chooseBest(const FileArguments &output, const AVFormatContext &muxer,
                  const InputFiles &inputs)
{
    Chosen chosen;
    const auto add = [&chosen](InputStream *stream) {
        if (stream) {
            chosen.push_back(stream);
        }
    };
    if (isWanted(output, AVMEDIA_TYPE_VIDEO) && hasDefaultCodec(muxer, AVMEDIA_TYPE_VIDEO)) {
        // Audio formats hold their cover picture as video, and nothing else.
        const bool wantsPictures =
            avformat_query_codec(muxer.oformat, muxer.oformat->video_codec, 0) ==
            static_cast<int>(MKTAG('A', 'P', 'I', 'C'));
        add(bestOf(AVMEDIA_TYPE_VIDEO, inputs, wantsPictures));
    }
    if (isWanted(output, AVMEDIA_TYPE_AUDIO) && hasDefaultCodec(muxer, AVMEDIA_TYPE_AUDIO)) {
        add(bestOf(AVMEDIA_TYPE_AUDIO, inputs, false));
    }
    if (isWanted(output, AVMEDIA_TYPE_SUBTITLE)) {
        add(firstSubtitle(output, *muxer.oformat, inputs));
    }
    if (isWanted(output, AVMEDIA_TYPE_DATA)) {
        const AVCodecID codec =
            av_guess_codec(muxer.oformat, nullptr, muxer.url, nullptr, AVMEDIA_TYPE_DATA);
        for (const auto &file : inputs) {
            for (InputStream &stream : file->streams()) {
                if (codec != AV_CODEC_ID_NONE && stream.type() == AVMEDIA_TYPE_DATA &&
                    stream.stream->codecpar->codec_id == codec && !stream.isDisabled) {
                    chosen.push_back(&stream);
                }
            }
        }
    }
    return chosen;
}

}

std::vector<InputStream *> chooseStreams(const FileArguments &output, const AVFormatContext &muxer,
                                         const InputFiles &inputs, const RunContext &run)
{
    if (!output.value("map")) {
        return chooseBest(output, muxer, inputs);
    }
    Chosen chosen = chooseMapped(output, inputs, run);
    dropUnwanted(output, run, chosen);
    return chosen;
}

}
