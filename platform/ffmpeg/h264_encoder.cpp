// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/ffmpeg/h264_encoder.h"

#include "platform/ffmpeg/command_failed.h"

#include <cstdint>

namespace veltro::ffmpeg {

H264EncoderChoice chooseH264Encoder(int width, int height)
{
    if (const AVCodec *x264 = avcodec_find_encoder_by_name("libx264")) {
        // At the same bit rate the faster presets look the same in practice and take half the time;
        // above 1440p the slower one also needs more than a gigabyte of memory.
        const bool isLarge = std::int64_t{width} * height > std::int64_t{2560} * 1440;
        return {x264, {{"preset", isLarge ? "superfast" : "veryfast"}}};
    }
    if (const AVCodec *other = avcodec_find_encoder(AV_CODEC_ID_H264)) {
        return {other, {}};
    }
    throw CommandFailed("No H.264 encoder was found on this machine");
}

}
