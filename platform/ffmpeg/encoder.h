// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once
#include "platform/ffmpeg/output_file.h"

namespace veltro::ffmpeg {

/// Turns the frames of one output stream into packets and passes them to its file. It is opened
/// when the first frame shows what it will get. The run's thread.
class Encoder {
public:
    Encoder(OutputFile &output, OutputStream &stream, const RunContext &run);

    [[nodiscard]] bool isOpen() const { return m_isOpen; }
    /// Opens the encoder for what comes out of a filter graph, and makes the stream ready.
    /// @param first the frame that comes first, for what graphs do not know; may be null.
    /// @throws CommandFailed
    void openFor(AVFilterContext *sink, const AVFrame *first);
    /// Only when open.
    [[nodiscard]] AVRational timeBase() const { return m_codec->time_base; }
    /// How many samples a frame must have; 0 for any number.
    [[nodiscard]] int frameSize() const;

    /// Encodes a frame, whose timestamp is in timeBase().
    /// @throws CommandFailed
    void encode(AVFrame &frame);
    /// Writes what the encoder still holds.
    void flush();

private:
    void configureVideo(AVFilterContext *sink, const AVFrame *first);
    void configureAudio(AVFilterContext *sink);
    void configureCommon();
    [[nodiscard]] AVRational chooseFrameRate(AVFilterContext *sink) const;
    [[nodiscard]] AVRational chooseTimeBase(AVRational usual) const;
    void nameEncoder();
    void openCodec();
    void describeStream();
    void send(const AVFrame *frame);

    OutputFile &m_output;
    OutputStream &m_stream;
    const RunContext &m_run;
    const CodecContextPtr m_codec;
    const PacketPtr m_packet;
    bool m_isOpen = false;
};

}
