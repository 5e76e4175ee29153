// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/ffmpeg/decoder.h"

#include "platform/ffmpeg/av_error.h"
#include "platform/ffmpeg/known_colours.h"
#include "platform/ffmpeg/libav_versions.h"
#include "platform/ffmpeg/safe_input.h"

#include <algorithm>
#include <string>

namespace veltro::ffmpeg {
namespace {

std::string numbered(const InputStream &source)
{
    return "#" + std::to_string(source.fileIndex) + ":" + std::to_string(source.stream->index);
}

}

CodecContextPtr openDecoder(InputStream &source, const RunContext &run)
{
    if (!source.decoder) {
        throw CommandFailed("Decoder (codec " +
                            std::string(avcodec_get_name(source.stream->codecpar->codec_id)) +
                            ") not found for input stream " + numbered(source));
    }
    CodecContextPtr codec(avcodec_alloc_context3(source.decoder));
    if (!codec || avcodec_parameters_to_context(codec.get(), source.stream->codecpar) < 0) {
        throw CommandFailed("Error initializing the decoder context.");
    }
    codec->opaque = &run.log;
    codec->pkt_timebase = source.stream->time_base;
    codec->framerate = source.stream->avg_frame_rate;
    codec->max_pixels = maxPixels;
    DictionaryLoan options(source.decoderOptions);
    // One picture on its own would only come out at the end with several threads.
    av_dict_set(options, "threads", source.isPicture() ? "1" : "auto",
                source.isPicture() ? 0 : AV_DICT_DONT_OVERWRITE);
    if (const int error = avcodec_open2(codec.get(), source.decoder, options); error < 0) {
        throw CommandFailed("Error while opening decoder for input stream " + numbered(source) +
                            " : " + errorText(error));
    }
    return codec;
}

Decoder::Decoder(InputStream &source, const RunContext &run)
    : m_source(source)
    , m_run(run)
    , m_packetBase(source.stream->time_base)
    , m_usualRate(source.stream->avg_frame_rate)
    , m_pixel(source.stream->sample_aspect_ratio)
    , m_codec(openDecoder(source, run))
    , m_frame(av_frame_alloc())
    , m_packet(av_packet_alloc())
{
    if (!m_frame || !m_packet) {
        throw CommandFailed("Cannot allocate memory");
    }
}

AVRational Decoder::timeBase() const
{
    if (m_source.type() == AVMEDIA_TYPE_AUDIO) {
        return {1, std::max(1, m_codec->sample_rate)};
    }
    return m_source.frameRate.num ? av_inv_q(m_source.frameRate) : m_packetBase;
}

void Decoder::decode(const AVPacket &packet, std::int64_t position, const FrameSink &sink)
{
    m_position = position;
    if (packet.size == 0) {
        return; // would be taken for the end
    }
    if (av_packet_ref(m_packet.get(), &packet) < 0) {
        throw CommandFailed("Cannot allocate memory");
    }
    if (m_packet->dts == noTimestamp && m_source.type() == AVMEDIA_TYPE_VIDEO) {
        m_packet->dts = av_rescale_q(m_position, microseconds, m_packetBase);
    }
    const int error = avcodec_send_packet(m_codec.get(), m_packet.get());
    if (error < 0 && error != AVERROR_EOF) {
        fail(error);
    } else {
        receive(m_packet.get(), sink);
    }
    av_packet_unref(m_packet.get());
}

void Decoder::drain(std::int64_t position, const FrameSink &sink)
{
    m_position = position;
    if (avcodec_send_packet(m_codec.get(), nullptr) >= 0) {
        receive(nullptr, sink);
    }
}

void Decoder::receive(const AVPacket *packet, const FrameSink &sink)
{
    for (;;) {
        m_run.control.check();
        const int error = avcodec_receive_frame(m_codec.get(), m_frame.get());
        if (error == AVERROR(EAGAIN) || error == AVERROR_EOF) {
            return;
        }
        if (error < 0) {
            fail(error);
            if (packet) {
                return;
            }
            continue; // what is left of a damaged stream still comes out at its end
        }
        ++m_frames;
        if (m_source.type() == AVMEDIA_TYPE_VIDEO) {
            forgetUnnamedColours(*m_frame);
            timePicture(*m_frame);
        } else if (m_frame->sample_rate > 0) {
            timeSound(*m_frame, packet);
        } else {
            fail(AVERROR_INVALIDDATA);
            continue;
        }
        sink(*m_frame);
        av_frame_unref(m_frame.get());
    }
}

void Decoder::fail(int error)
{
    ++m_errors;
    const std::string text =
        "Error while decoding stream " + numbered(m_source) + ": " + errorText(error);
    if (m_run.stopsOnError) {
        throw CommandFailed(text);
    }
    m_run.error(text);
}

void Decoder::timePicture(AVFrame &frame)
{
    if (m_source.frameRate.num) { // the user's rate counts, not the file's timestamps
        frame.pts = m_next == noTimestamp ? 0 : m_next;
        m_next = frame.pts + 1;
        return;
    }
    frame.pts = frame.best_effort_timestamp;
    if (frame.pts == noTimestamp) {
        frame.pts = m_next == noTimestamp ? 0 : m_next;
    }
    std::int64_t length = durationOf(frame);
    if (length <= 0 && m_usualRate.num > 0) {
        length = av_rescale_q(1, av_inv_q(m_usualRate), m_packetBase);
    }
    m_next = addTime(frame.pts, std::max(std::int64_t{1}, length));
    if (m_pixel.num) {
        frame.sample_aspect_ratio = m_pixel;
    }
}

void Decoder::timeSound(AVFrame &frame, const AVPacket *packet)
{
    AVRational base = m_packetBase;
    if (frame.pts == noTimestamp && packet) {
        frame.pts = packet->pts;
    }
    if (frame.pts == noTimestamp) {
        frame.pts = m_position;
        base = microseconds;
    }
    // After a gap the samples are not counted on from what was before it.
    if (packet && packet->pts != noTimestamp) {
        if (packet->duration && m_lastPacket != noTimestamp &&
            subtractTime(packet->pts, m_lastPacket) > packet->duration) {
            m_rescaleState = noTimestamp;
        }
    }
    if (packet) {
        m_lastPacket = packet->pts;
    }
    const AVRational samples{1, frame.sample_rate};
    if (frame.pts != noTimestamp) {
        frame.pts =
            av_rescale_delta(base, frame.pts, samples, frame.nb_samples, &m_rescaleState, samples);
    }
}

}
