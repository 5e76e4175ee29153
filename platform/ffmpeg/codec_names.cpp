// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/ffmpeg/codec_names.h"

#include "platform/ffmpeg/command_failed.h"

#include <cstdlib>

namespace veltro::ffmpeg {

const AVCodec &findCodec(const std::string &name, AVMediaType type, CodecUse use)
{
    const bool encodes = use == CodecUse::encode;
    const std::string kind = encodes ? "encoder" : "decoder";
    const AVCodec *codec = encodes ? avcodec_find_encoder_by_name(name.c_str())
                                   : avcodec_find_decoder_by_name(name.c_str());
    if (!codec) {
        if (const AVCodecDescriptor *format = avcodec_descriptor_get_by_name(name.c_str())) {
            codec = encodes ? avcodec_find_encoder(format->id) : avcodec_find_decoder(format->id);
        }
    }
    if (!codec) {
        throw CommandFailed("Unknown " + kind + " '" + name + "'");
    }
    if (codec->type != type) {
        throw CommandFailed("Invalid " + kind + " type '" + name + "'");
    }
    return *codec;
}

std::uint32_t parseTag(const std::string &text)
{
    char *end = nullptr;
    const auto number = static_cast<std::uint32_t>(std::strtol(text.c_str(), &end, 0));
    if (!*end) {
        return number;
    }
    std::uint32_t tag = 0;
    for (std::size_t i = 0; i < 4 && i < text.size(); ++i) {
        tag |= static_cast<std::uint32_t>(static_cast<unsigned char>(text[i])) << (8 * i);
    }
    return tag;
}

int subtitleKind(AVCodecID codec)
{
    const AVCodecDescriptor *descriptor = avcodec_descriptor_get(codec);
    return descriptor ? descriptor->props & (AV_CODEC_PROP_TEXT_SUB | AV_CODEC_PROP_BITMAP_SUB) : 0;
}

}
