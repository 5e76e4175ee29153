// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/ffmpeg/transcode_path.h"

#include <algorithm>
#include <string>
#include <utility>

namespace veltro::ffmpeg {
namespace {

// How many packets may be under way: enough to keep both threads busy over a stretch of pictures
// that are harder than others, in pictures whose memory together stays bounded.
std::size_t packetsUnderWay(const OutputFile &output, const InputStream &source)
{
    const FileArguments &arguments = output.arguments();
    if (arguments.isOn("shortest") || arguments.value("fs")) {
        return 0; // where the output ends depends on what has been written
    }
    if (source.type() != AVMEDIA_TYPE_VIDEO) {
        return 32;
    }
    constexpr std::int64_t budget = std::int64_t{64} << 20;
    const AVCodecParameters &codec = *source.stream->codecpar;
    const std::int64_t pixels = std::max(std::int64_t{1}, std::int64_t{codec.width} * codec.height);
    return static_cast<std::size_t>(std::clamp<std::int64_t>(budget * 2 / (3 * pixels), 4, 24));
}

PacketPtr referenceTo(const AVPacket &packet)
{
    PacketPtr copy(av_packet_alloc());
    if (!copy || av_packet_ref(copy.get(), &packet) < 0) {
        throw CommandFailed("Cannot allocate memory");
    }
    return copy;
}

}

TranscodePath::TranscodePath(InputFile &input, OutputFile &output, OutputStream &stream,
                             const RunContext &run)
    : m_output(output)
    , m_stream(stream)
    , m_source(*stream.source)
    , m_run(run)
    , m_fullDepth(packetsUnderWay(output, *stream.source))
    , m_decoder(*stream.source, run)
    , m_encode(input, output, stream, run)
    , m_decodeThread(
          "ffmpeg-decode", run.log, [this] { decodeJobs(); }, [this] { m_toDecode.close(); })
    , m_encodeThread(
          "ffmpeg-encode", run.log, [this] { encodeJobs(); },
          [this] {
              m_isAbandoned = true;
              m_toEncode.close();
          })
{}

// Before the encoder is open each packet is waited for: the header then stands where it would
// without threads, and the muxer's stream is described while nobody else looks at it.
std::size_t TranscodePath::depth() const
{
    return m_stream.isReady ? m_fullDepth : 0;
}

void TranscodePath::accept(const AVPacket &packet)
{
    if (m_stream.hasEnough) {
        return;
    }
    auto job = std::make_unique<Job>();
    job->packet = referenceTo(packet);
    begin(std::move(job));
    completeUntil(depth());
}

void TranscodePath::begin(JobPtr job)
{
    job->position = m_source.clock.position();
    ++m_underWay;
    m_toDecode.put(std::move(job));
}

void TranscodePath::completeUntil(std::size_t left)
{
    while (m_underWay > left) {
        const auto job = m_done.take();
        --m_underWay;
        complete(**job);
    }
}

void TranscodePath::complete(Job &job)
{
    if (job.failure) {
        std::rethrow_exception(job.failure);
    }
    Encoded &result = job.result;
    if (result.base.num && !m_stream.isReady) {
        m_stream.packetBase = result.base;
        m_output.streamReady(m_stream);
    }
    m_stream.hasEnough = m_stream.hasEnough || result.hasEnough;
    for (const PacketPtr &packet : result.packets) {
        av_packet_rescale_ts(packet.get(), result.base, m_stream.packetBase);
        m_output.write(m_stream, *packet);
    }
    if (result.base.num) {
        m_stream.duration = av_rescale_q(result.end, result.base, m_stream.packetBase);
    }
}

void TranscodePath::finish()
{
    completeUntil(0);
    auto job = std::make_unique<Job>();
    job->isLast = true;
    job->isWanted = !m_stream.hasEnough;
    begin(std::move(job));
    completeUntil(0);
    // Both threads wait for more now, so their counts can be read.
    m_run.control.countDecoded(m_decoder.frames(), m_decoder.errors());
    m_output.finish(m_stream);
}

void TranscodePath::decodeJobs() noexcept
{
    bool hasFailed = false;
    while (auto job = m_toDecode.take()) {
        if (!hasFailed && !m_isAbandoned) {
            hasFailed = !attempt(**job, &TranscodePath::decode);
        }
        m_toEncode.put(std::move(*job));
    }
}

// @returns whether it went well; what was thrown is thrown again by the run's thread.
bool TranscodePath::attempt(Job &job, void (TranscodePath::*work)(Job &job)) noexcept
{
    try {
        (this->*work)(job);
    } catch (...) {
        job.failure = std::current_exception();
    }
    return !job.failure;
}

void TranscodePath::decode(Job &job)
{
    m_run.control.check();
    const auto keep = [&job](AVFrame &frame) {
        FramePtr &kept = job.frames.emplace_back(av_frame_alloc());
        if (!kept) {
            throw CommandFailed("Cannot allocate memory");
        }
        av_frame_move_ref(kept.get(), &frame);
    };
    if (job.packet) {
        m_decoder.decode(*job.packet, job.position, keep);
        job.packet.reset();
    } else if (job.isWanted) {
        m_decoder.drain(job.position, keep);
    }
    job.base = m_decoder.timeBase();
    if (job.isLast && m_decoder.frames() == 0 && m_decoder.errors() > 0) {
        throw CommandFailed("Nothing of stream #" + std::to_string(m_source.fileIndex) + ":" +
                            std::to_string(m_source.stream->index) + " could be decoded");
    }
}

void TranscodePath::encodeJobs() noexcept
{
    bool hasFailed = false;
    while (auto job = m_toEncode.take()) {
        if (!hasFailed && !m_isAbandoned && !(*job)->failure) {
            hasFailed = !attempt(**job, &TranscodePath::encode);
        }
        m_done.put(std::move(*job));
    }
}

void TranscodePath::encode(Job &job)
{
    for (FramePtr &frame : job.frames) {
        m_run.control.check();
        m_encode.accept(*frame, job.base, job.result);
        frame.reset();
    }
    if (job.isLast) {
        m_encode.finish(job.base, job.result);
    }
}

}
