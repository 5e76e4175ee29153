// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/ffmpeg/transcode_path.h"

#include "platform/ffmpeg/libav_versions.h"

#include <string>

namespace veltro::ffmpeg {

TranscodePath::TranscodePath(InputFile &input, OutputFile &output, OutputStream &stream,
                             const RunContext &run)
    : m_output(output)
    , m_stream(stream)
    , m_run(run)
    , m_decoder(*stream.source, run)
    , m_filter(input, output, stream, run)
    , m_encoder(output, stream, run)
    , m_filtered(av_frame_alloc())
{
    if (!m_filtered) {
        throw CommandFailed("Cannot allocate memory");
    }
}

void TranscodePath::accept(const AVPacket &packet)
{
    m_decoder.decode(packet, [this](AVFrame &frame) { filter(frame); });
}

void TranscodePath::filter(AVFrame &frame)
{
    if (m_stream.hasEnough) {
        return;
    }
    const FrameShape shape = FrameShape::of(frame, m_stream.type());
    if (!m_filter.isBuilt() || !m_filter.fits(shape)) {
        rebuild(shape);
    }
    if (!m_filter.push(frame)) {
        m_stream.hasEnough = true;
    }
    drainFilter();
}

void TranscodePath::rebuild(const FrameShape &shape)
{
    if (m_filter.isBuilt() && isVideo()) { // no picture is lost with the graph that held it
        m_filter.end();
        drainFilter();
    }
    m_filter.build(shape, m_decoder.timeBase());
    if (isVideo()) {
        return;
    }
    // Frames of sound are cut to size on their way out, so the encoder is asked before the first.
    if (!m_encoder.isOpen()) {
        m_encoder.openFor(m_filter.sink(), nullptr);
    }
    if (const int size = m_encoder.frameSize()) {
        av_buffersink_set_frame_size(m_filter.sink(), static_cast<unsigned>(size));
    }
}

void TranscodePath::drainFilter()
{
    while (m_filter.pull(*m_filtered)) {
        if (!m_stream.hasEnough) {
            encode(*m_filtered);
        }
        av_frame_unref(m_filtered.get());
    }
}

void TranscodePath::encode(AVFrame &frame)
{
    if (m_frames >= m_stream.packetLimit) {
        m_stream.hasEnough = true;
    } else if (isVideo()) {
        encodePicture(frame);
    } else {
        encodeSound(frame);
    }
}

bool TranscodePath::isPastEnd(std::int64_t timestamp) const
{
    const auto &limit = m_output.range().duration;
    return limit && av_compare_ts(timestamp, m_encoder.timeBase(), *limit, microseconds) >= 0;
}

void TranscodePath::encodePicture(AVFrame &frame)
{
    if (!m_encoder.isOpen()) {
        m_encoder.openFor(m_filter.sink(), &frame);
        m_pictureTiming.emplace(m_stream.encode, m_encoder.timeBase(), m_output.start());
    }
    if (!m_pictureTiming->place(frame, av_buffersink_get_time_base(m_filter.sink()))) {
        return;
    }
    if (isPastEnd(frame.pts)) {
        m_stream.hasEnough = true;
        return;
    }
    ++m_frames;
    m_stream.duration = av_rescale_q(frame.pts + 1, m_encoder.timeBase(), m_stream.packetBase);
    m_encoder.encode(frame);
}

void TranscodePath::encodeSound(AVFrame &frame)
{
    const AVRational base = m_encoder.timeBase();
    if (frame.pts == noTimestamp) {
        frame.pts = m_nextSample;
    } else {
        const std::int64_t start = av_rescale_q(m_output.start(), microseconds, base);
        const AVRational from = av_buffersink_get_time_base(m_filter.sink());
        frame.pts = subtractTime(av_rescale_q(frame.pts, from, base), start);
    }
    if (isPastEnd(frame.pts)) {
        m_stream.hasEnough = true;
        return;
    }
    m_nextSample = addTime(frame.pts, frame.nb_samples);
    m_stream.duration = av_rescale_q(m_nextSample, base, m_stream.packetBase);
    ++m_frames;
    m_encoder.encode(frame);
}

void TranscodePath::finish()
{
    if (!m_stream.hasEnough) {
        m_decoder.drain([this](AVFrame &frame) { filter(frame); });
    }
    if (m_filter.isBuilt()) {
        m_filter.end();
        drainFilter();
    }
    m_run.control.countDecoded(m_decoder.frames(), m_decoder.errors());
    if (!m_encoder.isOpen()) {
        openWithoutFrames();
    }
    m_encoder.flush();
    m_output.finish(m_stream);
}

// A range that holds no frame still gives a file that says what would have been in it.
void TranscodePath::openWithoutFrames()
{
    const InputStream &source = *m_stream.source;
    if (m_decoder.frames() == 0 && m_decoder.errors() > 0) {
        throw CommandFailed("Nothing of stream #" + std::to_string(source.fileIndex) + ":" +
                            std::to_string(source.stream->index) + " could be decoded");
    }
    m_run.warn("Finishing stream " + std::to_string(m_output.index()) + ":" +
               std::to_string(m_stream.stream->index) + " without any data written to it.");
    if (!m_filter.isBuilt()) {
        const FrameShape announced = FrameShape::of(*source.stream->codecpar);
        if (announced.format < 0) {
            throw CommandFailed("Cannot determine format of input stream " +
                                std::to_string(source.fileIndex) + ":" +
                                std::to_string(source.stream->index) + " after EOF");
        }
        m_filter.build(announced, m_decoder.timeBase());
    }
    m_encoder.openFor(m_filter.sink(), nullptr);
}

}
