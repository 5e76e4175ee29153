// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/ffmpeg/copy_path.h"

#include "platform/ffmpeg/libav_versions.h"

#include <algorithm>

namespace veltro::ffmpeg {
namespace {

[[noreturn]] void failToCopyParameters()
{
    throw CommandFailed("Error setting up codec context options.");
}

// Options that a codec context takes may change what a copied stream claims to be.
CodecParametersPtr describe(const OutputStream &stream)
{
    const CodecContextPtr codec(avcodec_alloc_context3(nullptr));
    CodecParametersPtr parameters(avcodec_parameters_alloc());
    AVDictionary *options = nullptr;
    av_dict_copy(&options, stream.codecOptions.get(), 0);
    DictionaryPtr owned(options);
    if (!codec || !parameters ||
        avcodec_parameters_to_context(codec.get(), stream.source->stream->codecpar) < 0 ||
        av_opt_set_dict(codec.get(), DictionaryLoan(owned)) < 0 ||
        avcodec_parameters_from_context(parameters.get(), codec.get()) < 0) {
        failToCopyParameters();
    }
    return parameters;
}

}

CopyPath::CopyPath(InputFile &input, OutputFile &output, OutputStream &stream,
                   const RunContext &run)
    : m_input(input)
    , m_output(output)
    , m_stream(stream)
    , m_source(*stream.source)
    , m_run(run)
    , m_packet(av_packet_alloc())
{
    takeParameters();
    m_output.streamReady(m_stream);
    // A file in a file has no packets.
    m_stream.isFinished = m_stream.type() == AVMEDIA_TYPE_ATTACHMENT;
}

void CopyPath::takeParameters()
{
    const CodecParametersPtr reference = describe(m_stream);
    chooseTag(*reference);
    takeTiming();
    takeSideData();
    takeShape(*reference);
    m_stream.packetBase = m_source.stream->time_base;
}

// The source's tag is kept if the output's format uses it for this codec, or has none of its own.
void CopyPath::chooseTag(const AVCodecParameters &reference)
{
    AVCodecParameters &target = *m_stream.stream->codecpar;
    std::uint32_t tag = target.codec_tag;
    if (!tag) {
        const AVCodecTag *const *tags = m_output.context()->oformat->codec_tag;
        unsigned own = 0;
        if (!tags || av_codec_get_id(tags, reference.codec_tag) == reference.codec_id ||
            !av_codec_get_tag2(tags, reference.codec_id, &own)) {
            tag = reference.codec_tag;
        }
    }
    if (avcodec_parameters_copy(&target, &reference) < 0) {
        failToCopyParameters();
    }
    target.codec_tag = tag;
}

void CopyPath::takeTiming()
{
    AVStream &target = *m_stream.stream;
    const AVStream &source = *m_source.stream;
    const AVRational forced = m_source.frameRate;
    target.avg_frame_rate = forced.num ? forced : source.avg_frame_rate;
    if (forced.num && target.time_base.num <= 0) {
        target.time_base = av_inv_q(forced);
    }
    if (transferTiming(m_output.context()->oformat, &target, &source) < 0) {
        failToCopyParameters();
    }
    if (target.duration <= 0 && source.duration > 0) { // a hint for the muxer
        target.duration = av_rescale_q(source.duration, source.time_base, target.time_base);
    }
}

void CopyPath::takeSideData()
{
    AVStream &target = *m_stream.stream;
    if (!parametersHoldSideData) {
        for (const AVPacketSideData &data : sideDataOf(*m_source.stream)) {
            if (!copySideData(target, data)) {
                failToCopyParameters();
            }
        }
    }
    if (m_stream.rotation) {
        constexpr std::size_t size = sizeof(std::int32_t) * 9;
        if (std::uint8_t *matrix = newSideData(target, AV_PKT_DATA_DISPLAYMATRIX, size)) {
            av_display_rotation_set(reinterpret_cast<std::int32_t *>(matrix), -*m_stream.rotation);
        }
    }
}

void CopyPath::takeShape(const AVCodecParameters &reference)
{
    AVStream &target = *m_stream.stream;
    const AVStream &source = *m_source.stream;
    AVCodecParameters &codec = *target.codecpar;
    if (codec.codec_type == AVMEDIA_TYPE_AUDIO) {
        // What some containers call a block is the size of one packet and holds for no other.
        const bool isFrameSize =
            codec.block_align == 1 || codec.block_align == 1152 || codec.block_align == 576;
        if ((codec.codec_id == AV_CODEC_ID_MP3 && isFrameSize) ||
            codec.codec_id == AV_CODEC_ID_AC3) {
            codec.block_align = 0;
        }
    } else if (codec.codec_type == AVMEDIA_TYPE_VIDEO) {
        AVRational pixel = reference.sample_aspect_ratio;
        if (m_stream.aspect.num) {
            pixel = av_mul_q(m_stream.aspect, {codec.height, codec.width});
            m_run.warn("Overriding aspect ratio with stream copy may produce invalid files");
        } else if (source.sample_aspect_ratio.num) {
            pixel = source.sample_aspect_ratio;
        }
        target.sample_aspect_ratio = codec.sample_aspect_ratio = pixel;
        target.avg_frame_rate = source.avg_frame_rate;
        target.r_frame_rate = source.r_frame_rate;
    }
}

void CopyPath::accept(const AVPacket &packet)
{
    if (m_stream.isFinished || isBeforeStart(packet)) {
        return;
    }
    if (isPastEnd()) {
        m_output.finish(m_stream);
        return;
    }
    if (!m_packet || av_packet_ref(m_packet.get(), &packet) < 0) {
        throw CommandFailed("Cannot allocate memory");
    }
    retime(*m_packet);
    m_stream.duration = addTime(m_stream.duration, m_packet->duration);
    m_hasStarted = true;
    m_output.write(m_stream, *m_packet);
}

bool CopyPath::isBeforeStart(const AVPacket &packet) const
{
    const std::int64_t position = m_source.clock.position();
    if (m_output.range().start && position < m_output.start()) {
        return true;
    }
    if (m_hasStarted) {
        return false;
    }
    if (!(packet.flags & AV_PKT_FLAG_KEY) && !m_stream.copiesLeadingFrames) {
        return true;
    }
    if (m_stream.copiesBeforeStart) {
        return false;
    }
    return packet.pts == noTimestamp ? position < m_output.start()
                                     : packet.pts < av_rescale_q(m_output.start(), microseconds,
                                                                 m_source.stream->time_base);
}

bool CopyPath::isPastEnd() const
{
    const std::int64_t position = m_source.clock.position();
    const auto &wanted = m_output.range().duration;
    if (wanted && position >= addTime(*wanted, m_output.start())) {
        return true;
    }
    const auto &taken = m_input.range().duration;
    if (!taken) {
        return false;
    }
    std::int64_t begin = 0;
    if (m_run.copiesTimestamps) {
        begin = m_input.range().start.value_or(0);
        begin = addTime(begin, m_run.startsAtZero ? 0 : m_input.context()->start_time);
    }
    return position >= addTime(*taken, begin);
}

void CopyPath::retime(AVPacket &packet)
{
    const AVRational from = m_source.stream->time_base;
    const AVRational to = m_stream.packetBase;
    const std::int64_t start = av_rescale_q(m_output.start(), microseconds, to);
    if (packet.pts != noTimestamp) {
        packet.pts = subtractTime(av_rescale_q(packet.pts, from, to), start);
    }
    if (packet.dts == noTimestamp) {
        packet.dts = av_rescale_q(m_source.clock.position(), microseconds, to);
    } else if (m_stream.type() == AVMEDIA_TYPE_AUDIO &&
               m_source.stream->codecpar->sample_rate > 0) {
        // Counted in samples, so that rounding does not add up from packet to packet.
        AVCodecParameters &codec = *m_source.stream->codecpar;
        int samples = av_get_audio_frame_duration2(&codec, packet.size);
        if (samples <= 0) {
            samples = std::max(0, codec.frame_size);
        }
        packet.dts = av_rescale_delta(from, packet.dts, {1, codec.sample_rate}, samples,
                                      &m_rescaleState, to);
        packet.pts = subtractTime(packet.dts, start);
    } else {
        packet.dts = av_rescale_q(packet.dts, from, to);
    }
    packet.dts = subtractTime(packet.dts, start);
    packet.duration = av_rescale_q(packet.duration, from, to);
}

}
