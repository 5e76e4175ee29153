// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/ffmpeg/encode_stage.h"

#include "platform/ffmpeg/libav_versions.h"

#include <string>

namespace veltro::ffmpeg {
namespace {

std::vector<std::int64_t> chaptersOf(const OutputFile &output)
{
    const AVFormatContext &file = *output.context();
    std::vector<std::int64_t> starts;
    starts.reserve(file.nb_chapters);
    for (unsigned i = 0; i < file.nb_chapters; ++i) {
        starts.push_back(
            av_rescale_q(file.chapters[i]->start, file.chapters[i]->time_base, microseconds));
    }
    return starts;
}

}

EncodeStage::EncodeStage(const InputFile &input, const OutputFile &output, OutputStream &stream,
                         const RunContext &run)
    : m_output(output)
    , m_stream(stream)
    , m_run(run)
    , m_filter(input, output, stream, run)
    , m_encoder(output, stream, run)
    , m_filtered(av_frame_alloc())
{
    if (!m_filtered) {
        throw CommandFailed("Cannot allocate memory");
    }
}

void EncodeStage::accept(AVFrame &frame, AVRational base, Encoded &result)
{
    if (!m_hasEnough) {
        const FrameShape shape = FrameShape::of(frame, m_stream.type());
        if (!m_filter.isBuilt() || !m_filter.fits(shape)) {
            rebuild(shape, base, result);
        }
        m_hasEnough = !m_filter.push(frame) || m_hasEnough;
        drainFilter(result);
    }
    describe(result);
}

void EncodeStage::rebuild(const FrameShape &shape, AVRational base, Encoded &result)
{
    if (m_filter.isBuilt() && isVideo()) { // no picture is lost with the graph that held it
        m_filter.end();
        drainFilter(result);
    }
    m_filter.build(shape, base);
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

void EncodeStage::drainFilter(Encoded &result)
{
    while (m_filter.pull(*m_filtered)) {
        if (!m_hasEnough) {
            encode(*m_filtered, result);
        }
        av_frame_unref(m_filtered.get());
    }
}

void EncodeStage::encode(AVFrame &frame, Encoded &result)
{
    if (m_frames >= m_stream.packetLimit) {
        m_hasEnough = true;
        return;
    }
    if (isVideo()) {
        if (!placePicture(frame)) {
            return;
        }
    } else {
        placeSound(frame);
    }
    if (isPastEnd(frame.pts)) {
        m_hasEnough = true;
        return;
    }
    ++m_frames;
    m_end = addTime(frame.pts, isVideo() ? 1 : frame.nb_samples);
    m_encoder.encode(frame, result.packets);
}

bool EncodeStage::placePicture(AVFrame &frame)
{
    if (!m_encoder.isOpen()) {
        m_encoder.openFor(m_filter.sink(), &frame);
        m_pictureTiming.emplace(m_stream.encode, m_encoder.timeBase(), m_output.start());
        m_keyFrames.emplace(m_stream.encode.keyFrames, m_encoder.timeBase(), chaptersOf(m_output));
    }
    if (!m_pictureTiming->place(frame, av_buffersink_get_time_base(m_filter.sink()))) {
        return false;
    }
    frame.pict_type = m_keyFrames->wants(frame) ? AV_PICTURE_TYPE_I : AV_PICTURE_TYPE_NONE;
    return true;
}

void EncodeStage::placeSound(AVFrame &frame)
{
    if (frame.pts == noTimestamp) {
        frame.pts = m_end;
        return;
    }
    const AVRational base = m_encoder.timeBase();
    const std::int64_t start = av_rescale_q(m_output.start(), microseconds, base);
    const AVRational from = av_buffersink_get_time_base(m_filter.sink());
    frame.pts = subtractTime(av_rescale_q(frame.pts, from, base), start);
}

bool EncodeStage::isPastEnd(std::int64_t timestamp) const
{
    const auto &limit = m_output.range().duration;
    return limit && av_compare_ts(timestamp, m_encoder.timeBase(), *limit, microseconds) >= 0;
}

void EncodeStage::finish(AVRational base, Encoded &result)
{
    if (m_filter.isBuilt()) {
        m_filter.end();
        drainFilter(result);
    }
    if (!m_encoder.isOpen()) {
        openWithoutFrames(base);
    }
    m_encoder.flush(result.packets);
    describe(result);
}

// A range that holds no frame still gives a file that says what would have been in it.
void EncodeStage::openWithoutFrames(AVRational base)
{
    const InputStream &source = *m_stream.source;
    m_run.warn("Finishing stream " + std::to_string(m_output.index()) + ":" +
               std::to_string(m_stream.stream->index) + " without any data written to it.");
    if (!m_filter.isBuilt()) {
        const FrameShape announced = FrameShape::of(*source.stream->codecpar);
        if (announced.format < 0) {
            throw CommandFailed("Cannot determine format of input stream " +
                                std::to_string(source.fileIndex) + ":" +
                                std::to_string(source.stream->index) + " after EOF");
        }
        m_filter.build(announced, base);
    }
    m_encoder.openFor(m_filter.sink(), nullptr);
}

void EncodeStage::describe(Encoded &result) const
{
    result.hasEnough = m_hasEnough;
    result.end = m_end;
    if (m_encoder.isOpen()) {
        result.base = m_encoder.timeBase();
    }
}

}
