// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once
#include "platform/ffmpeg/input_file.h"
#include "platform/ffmpeg/run_control.h"

#include <cstdint>
#include <functional>

namespace veltro::ffmpeg {

/// Opens the decoder of a stream with what the command line says of it.
/// @throws CommandFailed in the tool's words.
[[nodiscard]] CodecContextPtr openDecoder(InputStream &source, const RunContext &run);

/// Turns the packets of one picture or sound stream into frames with timestamps. A packet that
/// cannot be decoded is counted, logged and passed over. Made by the run's thread, used by one
/// thread at a time: nothing of the demuxer is looked at afterwards.
class Decoder {
public:
    using FrameSink = std::function<void(AVFrame &frame)>;

    /// @throws CommandFailed
    Decoder(InputStream &source, const RunContext &run);

    /// The time base of the frames' timestamps.
    [[nodiscard]] AVRational timeBase() const;

    /// Decodes a packet of the stream and hands out every frame that is due.
    /// @param position of the stream's clock at this packet, in microseconds.
    void decode(const AVPacket &packet, std::int64_t position, const FrameSink &sink);
    /// Hands out the frames that the decoder still holds.
    void drain(std::int64_t position, const FrameSink &sink);

    [[nodiscard]] std::int64_t frames() const { return m_frames; }
    [[nodiscard]] std::int64_t errors() const { return m_errors; }

private:
    void receive(const AVPacket *packet, const FrameSink &sink);
    void fail(int error);
    void timePicture(AVFrame &frame);
    void timeSound(AVFrame &frame, const AVPacket *packet);

    const InputStream &m_source;
    const RunContext &m_run;
    const AVRational m_packetBase;
    const AVRational m_usualRate; // what the container says
    const AVRational m_pixel;     // likewise: a pixel's width to its height
    const CodecContextPtr m_codec;
    const FramePtr m_frame;
    const PacketPtr m_packet;
    std::int64_t m_position = noTimestamp; // of the input, in microseconds
    std::int64_t m_frames = 0;
    std::int64_t m_errors = 0;
    std::int64_t m_next = noTimestamp;       // where the next frame is expected, in timeBase()
    std::int64_t m_lastPacket = noTimestamp; // its time of showing
    std::int64_t m_rescaleState = noTimestamp;
};

}
