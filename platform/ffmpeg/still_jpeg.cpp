// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/ffmpeg/still_jpeg.h"

#include "platform/ffmpeg/libav_versions.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <utility>

namespace veltro::ffmpeg {
namespace {

constexpr AVPixelFormat jpegFormat = AV_PIX_FMT_YUVJ420P;

struct Size {
    int width = 0;
    int height = 0;
};

// How pixels move when a picture is shown: one of the eight ways that keep it upright on a grid.
struct Turn {
    bool swapsAxes = false;
    bool mirrorsAcross = false; // in the shown picture
    bool mirrorsDown = false;

    [[nodiscard]] bool isNone() const { return !swapsAxes && !mirrorsAcross && !mirrorsDown; }
};

// A matrix shows the pixel (x, y) at (a x + c y, b x + d y). What lies between two of the eight
// ways is drawn in the nearer one.
Turn turnOf(const StillFrame &still)
{
    if (!still.transform) {
        return {};
    }
    const auto &matrix = *still.transform;
    const std::int64_t a = matrix[0];
    const std::int64_t b = matrix[1];
    const std::int64_t c = matrix[3];
    const std::int64_t d = matrix[4];
    if (std::abs(a) + std::abs(d) >= std::abs(b) + std::abs(c)) {
        return {false, a < 0, d < 0};
    }
    return {true, c < 0, b < 0};
}

// The size of the picture in square pixels, before it is turned.
Size shownSize(const StillFrame &still)
{
    const Size coded{still.frame->width, still.frame->height};
    const double aspect =
        still.pixelAspect.num > 0 && still.pixelAspect.den > 0 ? av_q2d(still.pixelAspect) : 1.0;
    constexpr double strangest = 16; // beyond it the number is a mistake
    if (aspect > strangest || aspect < 1 / strangest) {
        return coded;
    }
    return {std::max(1, static_cast<int>(std::lround(coded.width * aspect))), coded.height};
}

Size fitted(Size size, int maxWidth, int maxHeight)
{
    const double scale = std::min({1.0, static_cast<double>(maxWidth) / size.width,
                                   static_cast<double>(maxHeight) / size.height});
    const auto scaled = [scale](int length) {
        return std::max(1, static_cast<int>(std::lround(length * scale)));
    };
    return {scaled(size.width), scaled(size.height)};
}

FramePtr makeFrame(Size size)
{
    FramePtr frame(av_frame_alloc());
    if (!frame) {
        return nullptr;
    }
    frame->format = jpegFormat;
    frame->width = size.width;
    frame->height = size.height;
    frame->color_range = AVCOL_RANGE_JPEG;
    frame->colorspace = AVCOL_SPC_BT470BG; // what readers of JPEG take for granted
    return av_frame_get_buffer(frame.get(), 0) < 0 ? nullptr : std::move(frame);
}

bool isFullRange(const AVFrame &frame)
{
    switch (static_cast<AVPixelFormat>(frame.format)) {
    case AV_PIX_FMT_YUVJ420P:
    case AV_PIX_FMT_YUVJ422P:
    case AV_PIX_FMT_YUVJ444P:
    case AV_PIX_FMT_YUVJ440P:
    case AV_PIX_FMT_YUVJ411P:
        return true;
    default:
        return frame.color_range == AVCOL_RANGE_JPEG;
    }
}

// What a file does not tell goes by the size, as players do: high definition has its own colours.
int coefficientsOf(const AVFrame &frame)
{
    if (frame.colorspace != AVCOL_SPC_UNSPECIFIED && frame.colorspace != AVCOL_SPC_RGB &&
        frame.colorspace != AVCOL_SPC_RESERVED) {
        return frame.colorspace;
    }
    return frame.height >= 720 ? SWS_CS_ITU709 : SWS_CS_ITU601;
}

FramePtr scale(const AVFrame &from, Size size)
{
    FramePtr to = makeFrame(size);
    const ScalerPtr scaler(
        sws_getContext(from.width, from.height, static_cast<AVPixelFormat>(from.format), size.width,
                       size.height, jpegFormat, SWS_BICUBIC, nullptr, nullptr, nullptr));
    if (!to || !scaler) {
        return nullptr;
    }
    constexpr int asIs = 1 << 16;
    sws_setColorspaceDetails(scaler.get(), sws_getCoefficients(coefficientsOf(from)),
                             isFullRange(from), sws_getCoefficients(SWS_CS_ITU601), 1, 0, asIs,
                             asIs);
    const int rows =
        sws_scale(scaler.get(), from.data, from.linesize, 0, from.height, to->data, to->linesize);
    return rows == size.height ? std::move(to) : nullptr;
}

struct Plane {
    std::uint8_t *data;
    int stride;
    Size size;
};

Plane planeOf(const AVFrame &frame, int index)
{
    const auto halved = [index](int length) { return index == 0 ? length : (length + 1) / 2; };
    return {frame.data[index], frame.linesize[index], {halved(frame.width), halved(frame.height)}};
}

void turnPlane(const Plane &from, const Plane &to, const Turn &turn)
{
    for (int y = 0; y < to.size.height; ++y) {
        const int down = turn.mirrorsDown ? to.size.height - 1 - y : y;
        std::uint8_t *row = to.data + std::ptrdiff_t{to.stride} * y;
        for (int x = 0; x < to.size.width; ++x) {
            const int across = turn.mirrorsAcross ? to.size.width - 1 - x : x;
            const int sourceX = turn.swapsAxes ? down : across;
            const int sourceY = turn.swapsAxes ? across : down;
            row[x] = from.data[std::ptrdiff_t{from.stride} * sourceY + sourceX];
        }
    }
}

FramePtr turned(FramePtr from, const Turn &turn)
{
    if (turn.isNone()) {
        return from;
    }
    const Size size =
        turn.swapsAxes ? Size{from->height, from->width} : Size{from->width, from->height};
    FramePtr to = makeFrame(size);
    for (int plane = 0; to && plane < 3; ++plane) {
        turnPlane(planeOf(*from, plane), planeOf(*to, plane), turn);
    }
    return to;
}

// The encoder's scale goes from 1 to 31 and halves the detail with each doubling, so the way from
// its best useful value, 2 at quality 1, to its worst, 31 at quality 0, is a geometric one: 0.7 is
// 4.55.
int encoderQuality(double quality)
{
    constexpr double best = 2;
    constexpr double worst = 31;
    const double wanted = best * std::pow(worst / best, 1 - std::clamp(quality, 0.0, 1.0));
    return static_cast<int>(std::lround(wanted * FF_QP2LAMBDA));
}

CodecContextPtr openJpeg(const AVFrame &frame, int quality)
{
    const AVCodec *encoder = avcodec_find_encoder(AV_CODEC_ID_MJPEG);
    CodecContextPtr codec(avcodec_alloc_context3(encoder));
    if (!encoder || !codec) {
        return nullptr;
    }
    codec->width = frame.width;
    codec->height = frame.height;
    codec->pix_fmt = jpegFormat;
    codec->color_range = AVCOL_RANGE_JPEG;
    codec->time_base = {1, 25};
    codec->thread_count = 1;
    codec->flags |= AV_CODEC_FLAG_QSCALE;
    codec->global_quality = quality;
    return avcodec_open2(codec.get(), encoder, nullptr) < 0 ? nullptr : std::move(codec);
}

std::optional<std::vector<std::uint8_t>> jpegOf(AVFrame &frame, int quality)
{
    const CodecContextPtr codec = openJpeg(frame, quality);
    const PacketPtr packet(av_packet_alloc());
    frame.pts = 0;
    frame.quality = quality;
    if (!codec || !packet || avcodec_send_frame(codec.get(), &frame) < 0 ||
        avcodec_send_frame(codec.get(), nullptr) < 0 ||
        avcodec_receive_packet(codec.get(), packet.get()) < 0) {
        return std::nullopt;
    }
    return std::vector<std::uint8_t>(packet->data, packet->data + packet->size);
}

}

std::optional<std::vector<std::uint8_t>> encodeStill(const StillFrame &still, const StillWish &wish)
{
    if (wish.maxWidth < 1 || wish.maxHeight < 1 || still.frame->width < 1 ||
        still.frame->height < 1) {
        return std::nullopt;
    }
    const Turn turn = turnOf(still);
    const int acrossLimit = turn.swapsAxes ? wish.maxHeight : wish.maxWidth;
    const int downLimit = turn.swapsAxes ? wish.maxWidth : wish.maxHeight;
    FramePtr picture = scale(*still.frame, fitted(shownSize(still), acrossLimit, downLimit));
    if (picture) {
        picture = turned(std::move(picture), turn);
    }
    return picture ? jpegOf(*picture, encoderQuality(wish.quality)) : std::nullopt;
}

}
