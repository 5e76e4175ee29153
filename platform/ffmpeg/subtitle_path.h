// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once
#include "platform/ffmpeg/input_file.h"
#include "platform/ffmpeg/output_file.h"
#include "platform/ffmpeg/stream_path.h"

#include <cstdint>
#include <vector>

namespace veltro::ffmpeg {

/// Decodes and encodes subtitles: from text to text, or from pictures to pictures.
class SubtitlePath : public StreamPath {
public:
    /// Opens both codecs and says that the output stream is ready.
    /// @throws CommandFailed
    SubtitlePath(OutputFile &output, OutputStream &stream, const RunContext &run);

    void accept(const AVPacket &packet) override;
    void finish() override;

private:
    void openEncoder();
    void decode(AVPacket &packet);
    void encode(AVSubtitle &subtitle);
    void encodeOnce(AVSubtitle &subtitle, std::int64_t position, bool isClearing);

    OutputFile &m_output;
    OutputStream &m_stream;
    InputStream &m_source;
    const RunContext &m_run;
    const CodecContextPtr m_decoder;
    const CodecContextPtr m_encoder;
    const PacketPtr m_packet;
    std::vector<std::uint8_t> m_buffer;
    std::int64_t m_decoded = 0;
    std::int64_t m_errors = 0;
};

}
