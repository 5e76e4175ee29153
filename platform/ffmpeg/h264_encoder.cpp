// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/ffmpeg/h264_encoder.h"

#include "platform/ffmpeg/av_ptr.h"
#include "platform/ffmpeg/libav_versions.h"
#include "platform/ffmpeg/session_log.h"
#include "platform/ffmpeg/vaapi_device.h"

#include <cstdint>

namespace veltro::ffmpeg {
namespace {

void addHardware(std::vector<H264Encoder> &list, const char *name, EncoderDeviceMaker device = {},
                 AVPixelFormat frameFormat = AV_PIX_FMT_NONE)
{
    if (const AVCodec *encoder = avcodec_find_encoder_by_name(name)) {
        list.push_back({encoder, {}, true, std::move(device), frameFormat});
    }
}

void addSoftware(std::vector<H264Encoder> &list, int width, int height)
{
    if (const AVCodec *x264 = avcodec_find_encoder_by_name("libx264")) {
        // At the same bit rate the faster presets look the same in practice and take half the time;
        // above 1440p the slower one also needs more than a gigabyte of memory.
        const bool isLarge = std::int64_t{width} * height > std::int64_t{2560} * 1440;
        list.push_back(
            {x264, {{"preset", isLarge ? "superfast" : "veryfast"}}, false, {}, AV_PIX_FMT_NONE});
    } else if (const AVCodec *other = avcodec_find_encoder(AV_CODEC_ID_H264)) {
        list.push_back({other, {}, false, {}, AV_PIX_FMT_NONE});
    }
}

// Whether it opens for what a transcode gives it. What it says on the way is nobody's concern.
bool opensH264(const H264Encoder &candidate, int width, int height)
{
    SessionLog unread;
    const SessionLog::Scope scope(unread);
    const CodecContextPtr codec(avcodec_alloc_context3(candidate.encoder));
    if (!codec) {
        return false;
    }
    codec->width = width & ~1;
    codec->height = height & ~1;
    codec->pix_fmt = AV_PIX_FMT_YUV420P;
    codec->time_base = {1, 30};
    codec->framerate = {30, 1};
    codec->bit_rate = 4'000'000;
    // Encoders that take only another order of the same samples say so.
    if (const AVPixelFormat *formats = pixelFormatsOf(candidate.encoder)) {
        codec->pix_fmt = avcodec_find_best_pix_fmt_of_list(formats, AV_PIX_FMT_YUV420P, 0, nullptr);
    }
    const auto device = candidate.makeDevice ? candidate.makeDevice() : nullptr;
    return (!device || device->attach(*codec) >= 0) &&
           avcodec_open2(codec.get(), candidate.encoder, nullptr) >= 0;
}

}

std::vector<H264Encoder> knownH264Encoders(int width, int height)
{
    std::vector<H264Encoder> list;
    addHardware(list, "h264_vaapi", makeVaapiDevice, AV_PIX_FMT_NV12);
    addHardware(list, "h264_nvenc");
    addHardware(list, "h264_qsv");
    addHardware(list, "h264_v4l2m2m");
    addSoftware(list, width, height);
    return list;
}

H264Encoder chooseH264Encoder(std::vector<H264Encoder> list, int width, int height)
{
    for (H264Encoder &candidate : list) {
        if (!candidate.isHardware || opensH264(candidate, width, height)) {
            return std::move(candidate);
        }
    }
    throw CommandFailed("No H.264 encoder was found on this machine");
}

}
