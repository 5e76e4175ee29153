// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once
#include "platform/ffmpeg/input_file.h"
#include "platform/ffmpeg/output_file.h"
#include "platform/ffmpeg/stream_path.h"

namespace veltro::ffmpeg {

/// Passes packets on as they are, only shifted in time.
class CopyPath : public StreamPath {
public:
    /// Gives the output stream its parameters and says that it is ready.
    CopyPath(InputFile &input, OutputFile &output, OutputStream &stream, const RunContext &run);

    void accept(const AVPacket &packet) override;
    void finish() override { m_output.finish(m_stream); }

private:
    void takeParameters();
    void chooseTag(const AVCodecParameters &reference);
    void takeTiming();
    void takeSideData();
    void takeShape(const AVCodecParameters &reference);

    [[nodiscard]] bool isBeforeStart(const AVPacket &packet) const;
    [[nodiscard]] bool isPastEnd() const;
    void retime(AVPacket &packet);

    InputFile &m_input;
    OutputFile &m_output;
    OutputStream &m_stream;
    const InputStream &m_source;
    const RunContext &m_run;
    const PacketPtr m_packet;
    std::int64_t m_rescaleState = noTimestamp; // for sound: where the last packet ended
    bool m_hasStarted = false;
};

}
