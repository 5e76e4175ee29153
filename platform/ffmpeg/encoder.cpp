// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/ffmpeg/encoder.h"

#include "platform/ffmpeg/av_error.h"
#include "platform/ffmpeg/input_file.h"
#include "platform/ffmpeg/libav_versions.h"

#include <algorithm>
#include <string>
#include <utility>

namespace veltro::ffmpeg {
namespace {

std::string numberOf(const OutputFile &output, const OutputStream &stream)
{
    return std::to_string(output.index()) + ":" + std::to_string(stream.stream->index);
}

// Whether options that have not been applied yet set a flag.
bool asksFor(void *object, const AVDictionary *options, const char *name, int flag)
{
    const AVDictionaryEntry *entry = av_dict_get(options, name, nullptr, AV_DICT_MATCH_CASE);
    const AVOption *option = av_opt_find(object, name, nullptr, 0, 0);
    int flags = 0;
    return entry && option && av_opt_eval_flags(object, option, entry->value, &flags) >= 0 &&
           (flags & flag);
}

}

Encoder::Encoder(const OutputFile &output, OutputStream &stream, const RunContext &run)
    : m_output(output)
    , m_stream(stream)
    , m_run(run)
    , m_codec(avcodec_alloc_context3(stream.encode.encoder))
    , m_device(stream.encode.makeDevice ? stream.encode.makeDevice() : nullptr)
{
    if (!m_codec) {
        throw CommandFailed("Error allocating the encoding context.");
    }
    m_codec->opaque = &run.log;
}

int Encoder::frameSize() const
{
    const bool isFree = m_stream.encode.encoder->capabilities & AV_CODEC_CAP_VARIABLE_FRAME_SIZE;
    return isFree ? 0 : m_codec->frame_size;
}

void Encoder::openFor(AVFilterContext *sink, const AVFrame *first)
{
    nameEncoder();
    configureCommon();
    if (m_stream.type() == AVMEDIA_TYPE_VIDEO) {
        configureVideo(sink, first);
    } else {
        configureAudio(sink);
    }
    openCodec();
    describeStream();
    m_isOpen = true;
}

// Files say which encoder made a stream.
void Encoder::nameEncoder()
{
    AVDictionary *&tags = m_stream.stream->metadata;
    if (av_dict_get(tags, "encoder", nullptr, 0)) {
        return;
    }
    // Whoever wants the same file from every version asks the muxer or the encoder for it.
    const bool isBitexact =
        m_stream.encode.isBitexact ||
        asksFor(m_output.context(), m_output.libraryOptions().format.get(), "fflags",
                AVFMT_FLAG_BITEXACT) ||
        asksFor(m_codec.get(), m_stream.encode.options.get(), "flags", AV_CODEC_FLAG_BITEXACT);
    const std::string library = isBitexact ? "Lavc" : LIBAVCODEC_IDENT;
    const std::string name = library + " " + m_stream.encode.encoder->name;
    av_dict_set(&tags, "encoder", name.c_str(), 0);
}

void Encoder::configureCommon()
{
    const EncodeSettings &encode = m_stream.encode;
    m_codec->codec_tag = encode.tag;
    if (encode.isBitexact) {
        m_codec->flags |= AV_CODEC_FLAG_BITEXACT;
    }
    if (encode.quality && *encode.quality >= 0) {
        m_codec->flags |= AV_CODEC_FLAG_QSCALE;
        m_codec->global_quality = static_cast<int>(FF_QP2LAMBDA * *encode.quality);
    }
    if (m_output.context()->oformat->flags & AVFMT_GLOBALHEADER) {
        m_codec->flags |= AV_CODEC_FLAG_GLOBAL_HEADER;
    }
}

AVRational Encoder::chooseFrameRate(AVFilterContext *sink) const
{
    const EncodeSettings &encode = m_stream.encode;
    AVRational rate = encode.frameRate.num ? encode.frameRate : av_buffersink_get_frame_rate(sink);
    if (rate.num <= 0 || rate.den <= 0) {
        rate = {25, 1};
        m_run.warn("No information about the input framerate is available. Falling back to a "
                   "default value of 25fps for output stream #" +
                   numberOf(m_output, m_stream) + ".");
    }
    if (const AVRational *known = frameRatesOf(encode.encoder)) {
        rate = known[av_find_nearest_q_idx(rate, known)];
    }
    if (encode.encoder->id == AV_CODEC_ID_MPEG4) { // counts in 16 bits
        av_reduce(&rate.num, &rate.den, rate.num, rate.den, 65535);
    }
    return rate;
}

AVRational Encoder::chooseTimeBase(AVRational usual) const
{
    const AVRational asked = m_stream.encode.timeBase;
    if (asked.num > 0) {
        return asked;
    }
    return asked.num < 0 ? m_stream.source->stream->time_base : usual;
}

void Encoder::configureVideo(AVFilterContext *sink, const AVFrame *first)
{
    const AVRational rate = chooseFrameRate(sink);
    m_codec->framerate = rate;
    m_stream.stream->avg_frame_rate = rate;
    m_codec->time_base = chooseTimeBase(av_inv_q(rate));
    m_codec->width = av_buffersink_get_w(sink);
    m_codec->height = av_buffersink_get_h(sink);
    m_codec->pix_fmt = static_cast<AVPixelFormat>(av_buffersink_get_format(sink));
    m_codec->sample_aspect_ratio =
        m_stream.aspect.num ? av_mul_q(m_stream.aspect, {m_codec->height, m_codec->width})
                            : av_buffersink_get_sample_aspect_ratio(sink);
    m_stream.stream->sample_aspect_ratio = m_codec->sample_aspect_ratio;
    if (!first) {
        return;
    }
    m_codec->color_range = first->color_range;
    m_codec->color_primaries = first->color_primaries;
    m_codec->color_trc = first->color_trc;
    m_codec->colorspace = first->colorspace;
    m_codec->chroma_sample_location = first->chroma_location;
    m_codec->field_order = AV_FIELD_PROGRESSIVE;
    if (isInterlaced(*first)) {
        const bool isMjpeg = m_codec->codec_id == AV_CODEC_ID_MJPEG;
        m_codec->field_order = isTopFirst(*first) ? (isMjpeg ? AV_FIELD_TT : AV_FIELD_TB)
                                                  : (isMjpeg ? AV_FIELD_BB : AV_FIELD_BT);
    }
}

void Encoder::configureAudio(AVFilterContext *sink)
{
    m_codec->sample_fmt = static_cast<AVSampleFormat>(av_buffersink_get_format(sink));
    m_codec->sample_rate = av_buffersink_get_sample_rate(sink);
    if (av_buffersink_get_ch_layout(sink, &m_codec->ch_layout) < 0) {
        throw CommandFailed("Error initializing output stream " + numberOf(m_output, m_stream) +
                            " -- the channels are not known");
    }
    m_codec->time_base = chooseTimeBase({1, std::max(1, m_codec->sample_rate)});
    // Samples that are not converted keep the depth that they really have.
    const AVCodecParameters &source = *m_stream.source->stream->codecpar;
    if (source.format == m_codec->sample_fmt) {
        m_codec->bits_per_raw_sample =
            std::min(source.bits_per_raw_sample, av_get_bytes_per_sample(m_codec->sample_fmt) * 8);
    }
}

void Encoder::openCodec()
{
    const AVCodec *encoder = m_stream.encode.encoder;
    DictionaryLoan options(m_stream.encode.options);
    av_dict_set(options, "threads", "auto", AV_DICT_DONT_OVERWRITE);
    int error = m_device ? m_device->attach(*m_codec) : 0;
    if (error >= 0) {
        error = avcodec_open2(m_codec.get(), encoder, options);
    }
    m_run.control.check();
    if (error == AVERROR_EXPERIMENTAL) {
        throw CommandFailed("The encoder '" + std::string(encoder->name) +
                            "' is experimental but experimental codecs are not enabled, add "
                            "'-strict -2' if you want to use it.");
    }
    if (error < 0) {
        fail("Error initializing output stream " + numberOf(m_output, m_stream) +
             " -- Error while opening encoder for output stream #" + numberOf(m_output, m_stream) +
             " - maybe incorrect parameters such as bit_rate, rate, width or height");
    }
    if (const AVDictionaryEntry *unused =
            av_dict_get(*options, "", nullptr, AV_DICT_IGNORE_SUFFIX)) {
        throw CommandFailed("Option " + std::string(unused->key) + " not found.");
    }
}

void Encoder::describeStream()
{
    AVStream &stream = *m_stream.stream;
    if (avcodec_parameters_from_context(stream.codecpar, m_codec.get()) < 0) {
        throw CommandFailed("Error initializing the output stream codec context.");
    }
    if (!parametersHoldSideData) {
        for (int i = 0; i < m_codec->nb_coded_side_data; ++i) {
            copySideData(stream, m_codec->coded_side_data[i]);
        }
    }
    for (const AVPacketSideData &data : sideDataOf(*m_stream.source->stream)) {
        if (data.type != AV_PKT_DATA_CPB_PROPERTIES) {
            copySideData(stream, data);
        }
    }
    // Pictures that have been turned are not to be turned again.
    const AVPacketSideData *matrix = findSideData(stream, AV_PKT_DATA_DISPLAYMATRIX);
    if (matrix && m_stream.source->rotates) {
        av_display_rotation_set(reinterpret_cast<std::int32_t *>(matrix->data), 0);
    }
    if (stream.time_base.num <= 0 || stream.time_base.den <= 0) {
        stream.time_base = m_codec->time_base;
    }
    const AVStream &source = *m_stream.source->stream;
    if (stream.duration <= 0 && source.duration > 0) { // a hint for the muxer
        stream.duration = av_rescale_q(source.duration, source.time_base, stream.time_base);
    }
}

void Encoder::fail(const std::string &text) const
{
    if (m_stream.encode.isHardware) {
        throw HardwareFailed(text);
    }
    throw CommandFailed(text);
}

void Encoder::encode(AVFrame &frame, std::vector<PacketPtr> &packets)
{
    frame.quality = m_codec->global_quality;
    if (const int error = m_device ? m_device->upload(frame) : 0; error < 0) {
        fail("Error bringing a frame to the encoder: " + errorText(error));
    }
    send(&frame, packets);
}

void Encoder::flush(std::vector<PacketPtr> &packets)
{
    send(nullptr, packets);
}

void Encoder::send(const AVFrame *frame, std::vector<PacketPtr> &packets)
{
    const char *kind = av_get_media_type_string(m_stream.type());
    int error = avcodec_send_frame(m_codec.get(), frame);
    if (error < 0 && error != AVERROR_EOF) {
        fail("Error submitting " + std::string(kind) +
             " frame to the encoder: " + errorText(error));
    }
    for (;;) {
        m_run.control.check();
        PacketPtr packet(av_packet_alloc());
        error = packet ? avcodec_receive_packet(m_codec.get(), packet.get()) : AVERROR(ENOMEM);
        if (error == AVERROR(EAGAIN) || error == AVERROR_EOF) {
            return;
        }
        if (error < 0) {
            fail(std::string(kind) + " encoding failed: " + errorText(error));
        }
        packets.push_back(std::move(packet));
    }
}

}
