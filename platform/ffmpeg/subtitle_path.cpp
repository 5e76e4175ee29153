// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/ffmpeg/subtitle_path.h"

#include "platform/ffmpeg/av_error.h"
#include "platform/ffmpeg/codec_names.h"
#include "platform/ffmpeg/decoder.h"
#include "platform/ffmpeg/libav_versions.h"

#include <cstring>
#include <memory>
#include <string>

namespace veltro::ffmpeg {
namespace {

constexpr std::size_t largestSubtitle = std::size_t{1} << 20;

struct SubtitleDeleter {
    void operator()(AVSubtitle *subtitle) const { avsubtitle_free(subtitle); }
};

std::string outputNumber(const OutputFile &output, const OutputStream &stream)
{
    return std::to_string(output.index()) + ":" + std::to_string(stream.stream->index);
}

}

SubtitlePath::SubtitlePath(OutputFile &output, OutputStream &stream, const RunContext &run)
    : m_output(output)
    , m_stream(stream)
    , m_source(*stream.source)
    , m_run(run)
    , m_decoder(openDecoder(*stream.source, run))
    , m_encoder(avcodec_alloc_context3(stream.encode.encoder))
    , m_packet(av_packet_alloc())
    , m_buffer(largestSubtitle)
{
    if (!m_encoder || !m_packet) {
        throw CommandFailed("Error allocating the encoding context.");
    }
    openEncoder();
    m_output.streamReady(m_stream);
}

void SubtitlePath::openEncoder()
{
    const int from = subtitleKind(m_source.stream->codecpar->codec_id);
    const int to = subtitleKind(m_stream.encode.encoder->id);
    const std::string failure =
        "Error initializing output stream " + outputNumber(m_output, m_stream) + " -- ";
    if (from && to && from != to) {
        throw CommandFailed(failure + "Subtitle encoding currently only possible from text to "
                                      "text or bitmap to bitmap");
    }
    m_encoder->opaque = &m_run.log;
    m_encoder->codec_tag = m_stream.encode.tag;
    m_encoder->time_base = microseconds;
    m_encoder->width = m_source.stream->codecpar->width;
    m_encoder->height = m_source.stream->codecpar->height;
    if (m_output.context()->oformat->flags & AVFMT_GLOBALHEADER) {
        m_encoder->flags |= AV_CODEC_FLAG_GLOBAL_HEADER;
    }
    // Styles; the codecs read it as a text that ends in a zero.
    if (const int size = m_decoder->subtitle_header_size; m_decoder->subtitle_header) {
        m_encoder->subtitle_header =
            static_cast<std::uint8_t *>(av_mallocz(static_cast<std::size_t>(size) + 1));
        if (!m_encoder->subtitle_header) {
            throw CommandFailed("Cannot allocate memory");
        }
        std::memcpy(m_encoder->subtitle_header, m_decoder->subtitle_header,
                    static_cast<std::size_t>(size));
        m_encoder->subtitle_header_size = size;
    }
    const std::string name = std::string(LIBAVCODEC_IDENT) + " " + m_stream.encode.encoder->name;
    av_dict_set(&m_stream.stream->metadata, "encoder", name.c_str(), AV_DICT_DONT_OVERWRITE);
    const int error = avcodec_open2(m_encoder.get(), m_stream.encode.encoder,
                                    DictionaryLoan(m_stream.encode.options));
    AVStream &stream = *m_stream.stream;
    if (error < 0 || avcodec_parameters_from_context(stream.codecpar, m_encoder.get()) < 0) {
        throw CommandFailed(failure + "Error while opening encoder for output stream #" +
                            outputNumber(m_output, m_stream) +
                            " - maybe incorrect parameters such as bit_rate, rate, width or "
                            "height");
    }
    stream.time_base = m_encoder->time_base;
    const AVStream &source = *m_source.stream;
    if (stream.duration <= 0 && source.duration > 0) {
        stream.duration = av_rescale_q(source.duration, source.time_base, stream.time_base);
    }
    m_stream.packetBase = m_encoder->time_base;
}

void SubtitlePath::accept(const AVPacket &packet)
{
    if (m_stream.isFinished ||
        (m_output.range().start && m_source.clock.position() < m_output.start())) {
        return;
    }
    if (av_packet_ref(m_packet.get(), &packet) < 0) {
        throw CommandFailed("Cannot allocate memory");
    }
    decode(*m_packet);
    av_packet_unref(m_packet.get());
}

void SubtitlePath::decode(AVPacket &packet)
{
    AVSubtitle subtitle = {};
    int isWhole = 0;
    const int error = avcodec_decode_subtitle2(m_decoder.get(), &subtitle, &isWhole, &packet);
    if (error < 0) {
        ++m_errors;
        m_run.error("Error while decoding stream #" + std::to_string(m_source.fileIndex) + ":" +
                    std::to_string(m_source.stream->index) + ": " + errorText(error));
        return;
    }
    if (!isWhole) {
        return;
    }
    const std::unique_ptr<AVSubtitle, SubtitleDeleter> freed(&subtitle);
    ++m_decoded;
    if (subtitle.num_rects > 0) {
        encode(subtitle);
    }
}

void SubtitlePath::encode(AVSubtitle &subtitle)
{
    if (subtitle.pts == noTimestamp) {
        m_run.error("Subtitle packets must have a pts");
        return;
    }
    const std::int64_t position = subtractTime(subtitle.pts, m_output.start());
    const auto &limit = m_output.range().duration;
    if (limit && position >= *limit) {
        m_output.finish(m_stream);
        return;
    }
    encodeOnce(subtitle, position, false);
    // This kind needs a packet of its own to take a picture away again.
    if (m_encoder->codec_id == AV_CODEC_ID_DVB_SUBTITLE) {
        encodeOnce(subtitle, position, true);
    }
}

void SubtitlePath::encodeOnce(AVSubtitle &subtitle, std::int64_t position, bool isClearing)
{
    constexpr AVRational milliseconds{1, 1000};
    // Encoders want the display to begin with the packet.
    subtitle.pts =
        addTime(position, av_rescale_q(subtitle.start_display_time, milliseconds, microseconds));
    subtitle.end_display_time -= subtitle.start_display_time;
    subtitle.start_display_time = 0;
    const unsigned count = subtitle.num_rects;
    subtitle.num_rects = isClearing ? 0 : count;
    const int size = avcodec_encode_subtitle(m_encoder.get(), m_buffer.data(),
                                             static_cast<int>(m_buffer.size()), &subtitle);
    subtitle.num_rects = count;
    if (size < 0) {
        throw CommandFailed("Subtitle encoding failed: " + errorText(size));
    }
    const PacketPtr packet(av_packet_alloc());
    if (!packet || av_new_packet(packet.get(), size) < 0) {
        throw CommandFailed("Cannot allocate memory");
    }
    std::memcpy(packet->data, m_buffer.data(), static_cast<std::size_t>(size));
    packet->pts = av_rescale_q(subtitle.pts, microseconds, m_stream.packetBase);
    packet->duration = av_rescale_q(subtitle.end_display_time, milliseconds, m_stream.packetBase);
    if (isClearing) {
        packet->pts = addTime(packet->pts, packet->duration);
    }
    packet->dts = packet->pts;
    m_stream.duration = addTime(m_stream.duration, packet->duration);
    m_output.write(m_stream, *packet);
}

void SubtitlePath::finish()
{
    m_run.control.countDecoded(m_decoded, m_errors);
    m_output.finish(m_stream);
}

}
