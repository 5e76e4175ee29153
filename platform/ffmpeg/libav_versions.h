// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once
#include "platform/ffmpeg/libav.h"

extern "C" {
#include <libavutil/avstring.h>
#include <libavutil/display.h>
#include <libavutil/eval.h>
#include <libavutil/parseutils.h>
#include <libavutil/pixdesc.h>
#include <libswresample/swresample.h>
}

#include <cstring>
#include <span>

// What differs between the releases of FFmpeg that we build with (5.1 to 8), in one place.

namespace veltro::ffmpeg {

#if LIBAVFORMAT_VERSION_INT >= AV_VERSION_INT(60, 15, 100)

inline std::span<const AVPacketSideData> sideDataOf(const AVStream &stream)
{
    const AVCodecParameters &parameters = *stream.codecpar;
    return {parameters.coded_side_data, static_cast<std::size_t>(parameters.nb_coded_side_data)};
}

inline std::uint8_t *newSideData(AVStream &stream, AVPacketSideDataType type, std::size_t size)
{
    AVCodecParameters &parameters = *stream.codecpar;
    AVPacketSideData *added = av_packet_side_data_new(
        &parameters.coded_side_data, &parameters.nb_coded_side_data, type, size, 0);
    return added ? added->data : nullptr;
}

#else

inline std::span<const AVPacketSideData> sideDataOf(const AVStream &stream)
{
    return {stream.side_data, static_cast<std::size_t>(stream.nb_side_data)};
}

inline std::uint8_t *newSideData(AVStream &stream, AVPacketSideDataType type, std::size_t size)
{
    return av_stream_new_side_data(&stream, type, size);
}

#endif

/// Whether copied parameters bring their stream's side data with them.
inline constexpr bool parametersHoldSideData =
    LIBAVFORMAT_VERSION_INT >= AV_VERSION_INT(60, 15, 100);

inline const AVPacketSideData *findSideData(const AVStream &stream, AVPacketSideDataType type)
{
    for (const AVPacketSideData &data : sideDataOf(stream)) {
        if (data.type == type) {
            return &data;
        }
    }
    return nullptr;
}

/// @returns false when there is no memory.
inline bool copySideData(AVStream &to, const AVPacketSideData &data)
{
    std::uint8_t *copy = newSideData(to, data.type, data.size);
    if (copy) {
        std::memcpy(copy, data.data, data.size);
    }
    return copy != nullptr;
}

inline std::int64_t durationOf(const AVFrame &frame)
{
#if LIBAVUTIL_VERSION_MAJOR >= 58
    return frame.duration;
#else
    return frame.pkt_duration;
#endif
}

#ifdef AV_FRAME_FLAG_KEY

inline bool isKeyFrame(const AVFrame &frame)
{
    return frame.flags & AV_FRAME_FLAG_KEY;
}
inline bool isInterlaced(const AVFrame &frame)
{
    return frame.flags & AV_FRAME_FLAG_INTERLACED;
}
inline bool isTopFirst(const AVFrame &frame)
{
    return frame.flags & AV_FRAME_FLAG_TOP_FIELD_FIRST;
}

#else

inline bool isKeyFrame(const AVFrame &frame)
{
    return frame.key_frame;
}
inline bool isInterlaced(const AVFrame &frame)
{
    return frame.interlaced_frame;
}
inline bool isTopFirst(const AVFrame &frame)
{
    return frame.top_field_first;
}

#endif

#if LIBAVCODEC_VERSION_INT >= AV_VERSION_INT(61, 13, 100)

template <typename Value>
const Value *supportedConfig(const AVCodec *codec, AVCodecConfig config)
{
    const void *values = nullptr;
    return avcodec_get_supported_config(nullptr, codec, config, 0, &values, nullptr) < 0
               ? nullptr
               : static_cast<const Value *>(values);
}
inline const AVPixelFormat *pixelFormatsOf(const AVCodec *codec)
{
    return supportedConfig<AVPixelFormat>(codec, AV_CODEC_CONFIG_PIX_FORMAT);
}
inline const AVSampleFormat *sampleFormatsOf(const AVCodec *codec)
{
    return supportedConfig<AVSampleFormat>(codec, AV_CODEC_CONFIG_SAMPLE_FORMAT);
}
inline const int *sampleRatesOf(const AVCodec *codec)
{
    return supportedConfig<int>(codec, AV_CODEC_CONFIG_SAMPLE_RATE);
}
inline const AVChannelLayout *channelLayoutsOf(const AVCodec *codec)
{
    return supportedConfig<AVChannelLayout>(codec, AV_CODEC_CONFIG_CHANNEL_LAYOUT);
}
inline const AVRational *frameRatesOf(const AVCodec *codec)
{
    return supportedConfig<AVRational>(codec, AV_CODEC_CONFIG_FRAME_RATE);
}

#else

inline const AVPixelFormat *pixelFormatsOf(const AVCodec *codec)
{
    return codec->pix_fmts;
}
inline const AVSampleFormat *sampleFormatsOf(const AVCodec *codec)
{
    return codec->sample_fmts;
}
inline const int *sampleRatesOf(const AVCodec *codec)
{
    return codec->supported_samplerates;
}
inline const AVChannelLayout *channelLayoutsOf(const AVCodec *codec)
{
    return codec->ch_layouts;
}
inline const AVRational *frameRatesOf(const AVCodec *codec)
{
    return codec->supported_framerates;
}

#endif

/// Gives a copied stream the time base that its source's container and codec suggest, which some
/// muxers build their own on. @returns an AVERROR code or 0.
inline int transferTiming(const AVOutputFormat *format, AVStream *to, const AVStream *from)
{
#if LIBAVFORMAT_VERSION_MAJOR < 61
    if (const int error =
            avformat_transfer_internal_stream_timing_info(format, to, from, AVFMT_TBCF_AUTO);
        error < 0) {
        return error;
    }
    if (to->time_base.num <= 0 || to->time_base.den <= 0) {
        to->time_base = av_add_q(av_stream_get_codec_timebase(to), {0, 1});
    }
#else
    static_cast<void>(format);
    if (to->time_base.num <= 0 || to->time_base.den <= 0) {
        to->time_base = from->time_base;
    }
#endif
    return 0;
}

}
