// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once
#include "platform/ffmpeg/output_file.h"

extern "C" {
#include <libavutil/eval.h>
}

#include <array>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace veltro::ffmpeg {

/// Says which pictures become key frames because the command line wants it (-force_key_frames):
/// those at given times, or those for which an expression is true, or the source's own.
class ForcedKeyFrames {
public:
    /// @param encoder the time base of the times asked about.
    /// @param chapters where the output's chapters begin, in microseconds.
    /// @throws CommandFailed for a wish that cannot be read.
    ForcedKeyFrames(const std::string &wish, AVRational encoder,
                    const std::vector<std::int64_t> &chapters);

    /// To be asked once for each picture, in order of time.
    [[nodiscard]] bool wants(const AVFrame &frame);

private:
    [[nodiscard]] bool isDue(double seconds);

    struct ExpressionDeleter {
        void operator()(AVExpr *expression) const { av_expr_free(expression); }
    };

    const AVRational m_encoder;
    bool m_followsSource = false;
    std::vector<std::int64_t> m_times; // in the encoder's time base, rising
    std::size_t m_next = 0;
    std::unique_ptr<AVExpr, ExpressionDeleter> m_expression;
    std::array<double, 5> m_values; // what the expression can ask for
    std::int64_t m_first = noTimestamp;
};

/// Brings the timestamps of pictures onto an encoder's time base. The rate stays variable: no
/// picture is made up for a gap, and one goes only when two would fall on the same place.
class PictureTiming {
public:
    /// @param encoder the encoder's time base.
    /// @param start where the output begins, in microseconds.
    PictureTiming(const EncodeSettings &settings, AVRational encoder, std::int64_t start);

    /// Sets the frame's timestamp. @returns false for a frame that is to be left out.
    [[nodiscard]] bool place(AVFrame &frame, AVRational filter);

private:
    [[nodiscard]] bool placeExactly(AVFrame &frame, AVRational filter);
    [[nodiscard]] bool placeOnGrid(AVFrame &frame, AVRational filter);

    const AVRational m_encoder;
    const std::int64_t m_start;
    const bool m_keepsEveryFrame;
    std::int64_t m_next = noTimestamp; // the earliest place for the next frame
};

}
