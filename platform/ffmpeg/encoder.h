// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once
#include "platform/ffmpeg/output_file.h"

#include <memory>
#include <string>
#include <vector>

namespace veltro::ffmpeg {

/// Turns the frames of one output stream into packets. It is opened when the first frame shows what
/// it will get. One thread at a time.
class Encoder {
public:
    Encoder(const OutputFile &output, OutputStream &stream, const RunContext &run);

    [[nodiscard]] bool isOpen() const { return m_isOpen; }
    /// Opens the encoder for what comes out of a filter graph, and describes the muxer's stream:
    /// nobody else may look at that meanwhile.
    /// @param first the frame that comes first, for what graphs do not know; may be null.
    /// @throws CommandFailed
    void openFor(AVFilterContext *sink, const AVFrame *first);
    /// Only when open.
    [[nodiscard]] AVRational timeBase() const { return m_codec->time_base; }
    /// How many samples a frame must have; 0 for any number.
    [[nodiscard]] int frameSize() const;

    /// Encodes a frame and adds the packets that come out; timestamps are in timeBase().
    /// @throws CommandFailed
    void encode(AVFrame &frame, std::vector<PacketPtr> &packets);
    /// Adds what the encoder still holds.
    void flush(std::vector<PacketPtr> &packets);

private:
    void configureVideo(AVFilterContext *sink, const AVFrame *first);
    void configureAudio(AVFilterContext *sink);
    void configureCommon();
    [[nodiscard]] AVRational chooseFrameRate(AVFilterContext *sink) const;
    [[nodiscard]] AVRational chooseTimeBase(AVRational usual) const;
    void nameEncoder();
    void openCodec();
    [[noreturn]] void fail(const std::string &text) const;
    void describeStream();
    void send(const AVFrame *frame, std::vector<PacketPtr> &packets);

    const OutputFile &m_output;
    OutputStream &m_stream;
    const RunContext &m_run;
    const CodecContextPtr m_codec;
    const std::unique_ptr<EncoderDevice> m_device; // null for ordinary encoders
    bool m_isOpen = false;
};

}
