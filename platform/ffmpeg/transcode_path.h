// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once
#include "platform/ffmpeg/decoder.h"
#include "platform/ffmpeg/encoder.h"
#include "platform/ffmpeg/filter_stage.h"
#include "platform/ffmpeg/frame_timing.h"
#include "platform/ffmpeg/stream_path.h"

#include <optional>

namespace veltro::ffmpeg {

/// Decodes, filters and encodes pictures or sound.
class TranscodePath : public StreamPath {
public:
    /// @throws CommandFailed when the stream cannot be decoded at all.
    TranscodePath(InputFile &input, OutputFile &output, OutputStream &stream,
                  const RunContext &run);

    void accept(const AVPacket &packet) override;
    void finish() override;

private:
    void filter(AVFrame &frame);
    void rebuild(const FrameShape &shape);
    void drainFilter();
    void encode(AVFrame &frame);
    void encodePicture(AVFrame &frame);
    void encodeSound(AVFrame &frame);
    void openWithoutFrames();
    [[nodiscard]] bool isPastEnd(std::int64_t timestamp) const;
    [[nodiscard]] bool isVideo() const { return m_stream.type() == AVMEDIA_TYPE_VIDEO; }

    OutputFile &m_output;
    OutputStream &m_stream;
    const RunContext &m_run;
    Decoder m_decoder;
    FilterStage m_filter;
    Encoder m_encoder;
    const FramePtr m_filtered;
    std::optional<PictureTiming> m_pictureTiming;
    std::int64_t m_nextSample = 0; // in the encoder's time base
    std::int64_t m_frames = 0;
};

}
