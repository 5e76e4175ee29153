// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/ffmpeg/filter_chain.h"

#include "platform/ffmpeg/libav_versions.h"

#include <array>
#include <cmath>

namespace veltro::ffmpeg {
namespace {

std::string describe(const AVChannelLayout &layout)
{
    std::array<char, 256> text{};
    return av_channel_layout_describe(&layout, text.data(), text.size()) < 0
               ? std::string()
               : std::string(text.data());
}

std::string withKey(const std::string &key, const std::string &values)
{
    return values.empty() ? values : key + "=" + values;
}

void append(std::string &list, const std::string &item, const char *separator)
{
    if (!item.empty()) {
        list += (list.empty() ? "" : separator) + item;
    }
}

std::string sampleFormats(const AVCodec *encoder, AVSampleFormat wanted)
{
    if (wanted != AV_SAMPLE_FMT_NONE) {
        return av_get_sample_fmt_name(wanted);
    }
    std::string list;
    const AVSampleFormat *formats = sampleFormatsOf(encoder);
    for (; formats && *formats != AV_SAMPLE_FMT_NONE; ++formats) {
        append(list, av_get_sample_fmt_name(*formats), "|");
    }
    return list;
}

std::string sampleRates(const AVCodec *encoder, int wanted)
{
    if (wanted) {
        return std::to_string(wanted);
    }
    std::string list;
    for (const int *rates = sampleRatesOf(encoder); rates && *rates; ++rates) {
        append(list, std::to_string(*rates), "|");
    }
    return list;
}

std::string layoutFor(const AVCodec *encoder, int channels)
{
    const AVChannelLayout *layouts = channelLayoutsOf(encoder);
    for (; layouts && layouts->nb_channels; ++layouts) {
        if (layouts->nb_channels == channels) {
            return describe(*layouts);
        }
    }
    AVChannelLayout usual = {};
    av_channel_layout_default(&usual, channels);
    const std::string text = describe(usual);
    av_channel_layout_uninit(&usual);
    return text;
}

std::string channelLayouts(const AVCodec *encoder, const SoundWish &wish)
{
    if (!wish.layout.empty()) {
        return wish.layout;
    }
    if (wish.channels) {
        return layoutFor(encoder, wish.channels);
    }
    std::string list;
    const AVChannelLayout *layouts = channelLayoutsOf(encoder);
    for (; layouts && layouts->nb_channels; ++layouts) {
        append(list, describe(*layouts), "|");
    }
    return list;
}

}

const std::int32_t *displayMatrixOf(const AVStream &stream)
{
    const AVPacketSideData *data = findSideData(stream, AV_PKT_DATA_DISPLAYMATRIX);
    const bool isWhole = data && data->size >= sizeof(std::int32_t) * 9;
    return isWhole ? reinterpret_cast<const std::int32_t *>(data->data) : nullptr;
}

std::string rotationFilter(const std::int32_t *matrix)
{
    if (!matrix) {
        return {};
    }
    const double measured = av_display_rotation_get(matrix);
    if (std::isnan(measured)) {
        return {};
    }
    double degrees = -std::round(measured);
    degrees -= 360 * std::floor(degrees / 360 + 0.9 / 360);
    const auto isAbout = [degrees](double angle) { return std::fabs(degrees - angle) < 1; };
    if (isAbout(90)) {
        return matrix[3] > 0 ? "transpose=cclock_flip" : "transpose=clock";
    }
    if (isAbout(270)) {
        return matrix[3] < 0 ? "transpose=clock_flip" : "transpose=cclock";
    }
    FilterChain chain;
    if (isAbout(180)) {
        chain.add(matrix[0] < 0 ? "hflip" : "");
        chain.add(matrix[4] < 0 ? "vflip" : "");
    } else if (isAbout(0)) {
        chain.add(matrix[4] < 0 ? "vflip" : "");
    } else {
        chain.add("rotate=" + std::to_string(degrees) + "*PI/180");
    }
    return chain.textOr("");
}

std::string trimFilter(bool isVideo, std::optional<std::int64_t> start,
                       std::optional<std::int64_t> duration)
{
    std::string limits;
    if (duration) {
        append(limits, "durationi=" + std::to_string(*duration) + "us", ":");
    }
    if (start) {
        append(limits, "starti=" + std::to_string(*start) + "us", ":");
    }
    return withKey(isVideo ? "trim" : "atrim", limits);
}

std::string formatFilter(std::initializer_list<AVPixelFormat> formats)
{
    std::string list;
    for (const AVPixelFormat format : formats) {
        append(list, av_get_pix_fmt_name(format), "|");
    }
    return withKey("format", list);
}

std::string formatFilter(const AVCodec *encoder)
{
    std::string list;
    const AVPixelFormat *formats = pixelFormatsOf(encoder);
    for (; formats && *formats != AV_PIX_FMT_NONE; ++formats) {
        const std::string name = av_get_pix_fmt_name(*formats);
        // Readers of JPEG expect the full range, which this encoder only has by these names.
        if (encoder->id != AV_CODEC_ID_MJPEG || name.starts_with("yuvj")) {
            append(list, name, "|");
        }
    }
    return withKey("format", list);
}

AVPixelFormat closestFormat(const AVCodec *encoder, AVPixelFormat wanted)
{
    const AVPixelFormat *formats = pixelFormatsOf(encoder);
    if (!formats) {
        return wanted;
    }
    const AVPixFmtDescriptor *description = av_pix_fmt_desc_get(wanted);
    const bool hasAlpha = description && description->flags & AV_PIX_FMT_FLAG_ALPHA;
    for (const AVPixelFormat *format = formats; *format != AV_PIX_FMT_NONE; ++format) {
        if (*format == wanted) {
            return wanted;
        }
    }
    return avcodec_find_best_pix_fmt_of_list(formats, wanted, hasAlpha, nullptr);
}

std::string soundFormatFilter(const AVCodec *encoder, const SoundWish &wish)
{
    std::string limits;
    append(limits, withKey("sample_fmts", sampleFormats(encoder, wish.format)), ":");
    append(limits, withKey("sample_rates", sampleRates(encoder, wish.rate)), ":");
    append(limits, withKey("channel_layouts", channelLayouts(encoder, wish)), ":");
    return withKey("aformat", limits);
}

}
