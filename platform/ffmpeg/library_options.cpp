// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/ffmpeg/library_options.h"

#include "platform/ffmpeg/libav.h"
#include "platform/ffmpeg/libav_versions.h"
#include "platform/ffmpeg/stream_options.h"

#include <array>
#include <string>
#include <utility>

namespace veltro::ffmpeg {
namespace {

constexpr int inClassAndChildren = AV_OPT_SEARCH_CHILDREN | AV_OPT_SEARCH_FAKE_OBJ;

// A class stands for the object that it would describe, so that nothing needs to be made.
const AVOption *findOption(const AVClass *type, const std::string &name,
                           int flags = inClassAndChildren, int wanted = 0)
{
    const AVOption *option =
        av_opt_find(static_cast<void *>(&type), name.c_str(), nullptr, wanted, flags);
    // What has no flags is a named value of another option.
    return option && option->flags ? option : nullptr;
}

const AVOption *findCodecOption(const std::string &name)
{
    if (const AVOption *option = findOption(avcodec_get_class(), name)) {
        return option;
    }
    // The old way to name a kind of stream: "vb" for "b" of the video.
    const bool hasKind = name.starts_with('v') || name.starts_with('a') || name.starts_with('s');
    return hasKind ? findOption(avcodec_get_class(), name.substr(1), AV_OPT_SEARCH_FAKE_OBJ)
                   : nullptr;
}

void add(DictionaryPtr &dictionary, const AVOption &option, const std::string &key,
         const std::string &value)
{
    // "+faststart" adds to what was said before of the same flags.
    const bool changes = value.starts_with('+') || value.starts_with('-');
    const bool appends = option.type == AV_OPT_TYPE_FLAGS && changes;
    av_dict_set(DictionaryLoan(dictionary), key.c_str(), value.c_str(),
                appends ? AV_DICT_APPEND : 0);
}

struct StreamKind {
    char prefix = 0;
    int flag = 0;
};

StreamKind kindOf(const AVStream &stream)
{
    switch (stream.codecpar->codec_type) {
    case AVMEDIA_TYPE_VIDEO:
        return {'v', AV_OPT_FLAG_VIDEO_PARAM};
    case AVMEDIA_TYPE_AUDIO:
        return {'a', AV_OPT_FLAG_AUDIO_PARAM};
    case AVMEDIA_TYPE_SUBTITLE:
        return {'s', AV_OPT_FLAG_SUBTITLE_PARAM};
    default:
        return {};
    }
}

// The name under which a codec of this kind takes the option; empty when it does not.
std::string nameForCodec(const std::string &name, const AVCodec *codec, StreamKind kind, int flags)
{
    const AVClass *general = avcodec_get_class();
    if (!codec || findOption(general, name, AV_OPT_SEARCH_FAKE_OBJ, flags) ||
        (codec->priv_class && findOption(codec->priv_class, name, AV_OPT_SEARCH_FAKE_OBJ, flags))) {
        return name;
    }
    if (kind.prefix && name.front() == kind.prefix &&
        findOption(general, name.substr(1), AV_OPT_SEARCH_FAKE_OBJ, flags)) {
        return name.substr(1);
    }
    return {};
}

}

bool isLibraryOption(std::string_view written)
{
    const std::string full(written);
    const std::string name = full.substr(0, full.find(':'));
    return !name.empty() &&
           (findCodecOption(name) || findOption(avformat_get_class(), full) ||
            findOption(sws_get_class(), full) || findOption(swr_get_class(), full));
}

LibraryOptions sortLibraryOptions(const FileArguments &file)
{
    LibraryOptions sorted;
    for (const GivenOption &given : file.libraryOptions) {
        const std::string key =
            given.specifier.empty() ? given.name : given.name + ':' + given.specifier;
        bool taken = false;
        if (const AVOption *option = findCodecOption(given.name)) {
            add(sorted.codec, *option, key, given.value);
            taken = true;
        }
        if (const AVOption *option = findOption(avformat_get_class(), key)) {
            add(sorted.format, *option, key, given.value);
            taken = true;
        }
        if (taken) {
            continue;
        }
        if (const AVOption *scaling = findOption(sws_get_class(), key)) {
            add(sorted.scaler, *scaling, key, given.value);
        } else if (const AVOption *resampling = findOption(swr_get_class(), key)) {
            add(sorted.resampler, *resampling, key, given.value);
        }
    }
    return sorted;
}

DictionaryPtr codecOptionsFor(const AVDictionary *all, AVFormatContext *file, AVStream *stream,
                              const AVCodec *codec)
{
    DictionaryPtr taken;
    const StreamKind kind = kindOf(*stream);
    const int flags =
        kind.flag | (file->oformat ? AV_OPT_FLAG_ENCODING_PARAM : AV_OPT_FLAG_DECODING_PARAM);
    const AVDictionaryEntry *entry = nullptr;
    while ((entry = av_dict_get(all, "", entry, AV_DICT_IGNORE_SUFFIX))) {
        const std::string key = entry->key;
        const auto colon = key.find(':');
        if (colon != std::string::npos && !matchesStream(file, stream, key.substr(colon + 1))) {
            continue;
        }
        const std::string name = nameForCodec(key.substr(0, colon), codec, kind, flags);
        if (!name.empty()) {
            av_dict_set(DictionaryLoan(taken), name.c_str(), entry->value, 0);
        }
    }
    return taken;
}

}
