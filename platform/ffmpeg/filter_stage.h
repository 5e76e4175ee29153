// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once
#include "platform/ffmpeg/input_file.h"
#include "platform/ffmpeg/output_file.h"

#include <array>
#include <cstdint>
#include <optional>
#include <string>

namespace veltro::ffmpeg {

/// What frames of a stream look like; a filter graph is made for one shape.
struct FrameShape {
    int format = -1;
    int width = 0;
    int height = 0;
    AVRational pixel{0, 1}; ///< its width to its height
    AVColorSpace colorSpace = AVCOL_SPC_UNSPECIFIED;
    AVColorRange colorRange = AVCOL_RANGE_UNSPECIFIED;
    int sampleRate = 0;
    std::string channelLayout;
    int channels = 0;
    std::optional<std::array<std::int32_t, 9>> rotation; ///< a display matrix

    /// Whether the same graph serves both. Tags that filters pass through do not count.
    [[nodiscard]] bool isLike(const FrameShape &other) const;

    [[nodiscard]] static FrameShape of(const AVFrame &frame, AVMediaType type);
    /// As the container announces it, for a stream that never gave a frame.
    [[nodiscard]] static FrameShape of(const AVCodecParameters &codec);
};

/// The filters between one decoder and one encoder: those that the command line asks for, and
/// those that turn, cut, crop, scale and convert what comes into what the encoder takes. Made by
/// the run's thread, used by one thread at a time.
class FilterStage {
public:
    FilterStage(const InputFile &input, const OutputFile &output, const OutputStream &stream,
                const RunContext &run);

    [[nodiscard]] bool isBuilt() const { return m_graph != nullptr; }
    [[nodiscard]] bool fits(const FrameShape &shape) const { return m_shape.isLike(shape); }
    /// Makes the graph for frames of this shape. A later graph gives what the first one gave.
    /// @param base of the frames' timestamps.
    /// @throws CommandFailed
    void build(const FrameShape &shape, AVRational base);

    /// Puts a frame in, which is taken over. @returns false when no more are wanted.
    [[nodiscard]] bool push(AVFrame &frame);
    /// Says that no more frames come.
    void end();
    /// Takes a frame out. @returns false when there is none for now.
    [[nodiscard]] bool pull(AVFrame &frame);

    /// Where frames come out: asked for their format by the encoder. Only when built.
    [[nodiscard]] AVFilterContext *sink() const { return m_sink; }

private:
    [[nodiscard]] bool isVideo() const { return m_stream.type() == AVMEDIA_TYPE_VIDEO; }
    void makeSource(const FrameShape &shape, AVRational base);
    void makeSink();
    void connect(const std::string &chain);
    void rememberResult();

    [[nodiscard]] std::string chain(const FrameShape &shape) const;
    [[nodiscard]] std::string inputTrim() const;
    [[nodiscard]] std::string outputTrim() const;
    [[nodiscard]] std::string cropping(const FrameShape &shape) const;
    [[nodiscard]] std::string pixelFormats() const;
    [[nodiscard]] std::string soundFormats() const;

    const InputFile &m_input;
    const InputStream &m_source;
    const OutputFile &m_output;
    const OutputStream &m_stream;
    const RunContext &m_run;
    const AVRational m_usualRate; // the best guess at the pictures' rate
    const std::optional<std::array<std::int32_t, 9>> m_rotation; // of the whole stream
    FrameShape m_shape;
    std::optional<FrameShape> m_result; // of the first graph; later ones must give the same
    FilterGraphPtr m_graph;
    AVFilterContext *m_sourceFilter = nullptr; // owned by m_graph
    AVFilterContext *m_sink = nullptr;         // owned by m_graph
};

}
