// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once
#include "platform/ffmpeg/encoder.h"
#include "platform/ffmpeg/filter_stage.h"
#include "platform/ffmpeg/frame_timing.h"

#include <cstdint>
#include <optional>
#include <vector>

namespace veltro::ffmpeg {

/// What became of some frames.
struct Encoded {
    std::vector<PacketPtr> packets; ///< their timestamps are in base
    AVRational base{0, 1};          ///< 0/1 until the encoder is open
    std::int64_t end = 0;           ///< where the frames encoded so far end, in base
    bool hasEnough = false;         ///< no more frames are wanted
};

/// Filters the frames of one stream and encodes them. One thread at a time; until the encoder is
/// open the run's thread must stand still, as the muxer's stream is described from here.
class EncodeStage {
public:
    EncodeStage(const InputFile &input, const OutputFile &output, OutputStream &stream,
                const RunContext &run);

    /// Takes a frame over.
    /// @param base of the frame's timestamp.
    /// @throws CommandFailed, CommandCancelled
    void accept(AVFrame &frame, AVRational base, Encoded &result);
    /// No more frames come: everything that is held back comes out.
    /// @param base as of the frames that never came.
    void finish(AVRational base, Encoded &result);

private:
    void rebuild(const FrameShape &shape, AVRational base, Encoded &result);
    void drainFilter(Encoded &result);
    void encode(AVFrame &frame, Encoded &result);
    [[nodiscard]] bool placePicture(AVFrame &frame);
    void placeSound(AVFrame &frame);
    void openWithoutFrames(AVRational base);
    void describe(Encoded &result) const;
    [[nodiscard]] bool isPastEnd(std::int64_t timestamp) const;
    [[nodiscard]] bool isVideo() const { return m_stream.type() == AVMEDIA_TYPE_VIDEO; }

    const OutputFile &m_output;
    const OutputStream &m_stream;
    const RunContext &m_run;
    FilterStage m_filter;
    Encoder m_encoder;
    const FramePtr m_filtered;
    std::optional<PictureTiming> m_pictureTiming;
    std::optional<ForcedKeyFrames> m_keyFrames;
    std::int64_t m_end = 0; // in the encoder's time base
    std::int64_t m_frames = 0;
    bool m_hasEnough = false;
};

}
