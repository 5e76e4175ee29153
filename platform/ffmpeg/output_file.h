// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once
#include "platform/ffmpeg/av_ptr.h"
#include "platform/ffmpeg/command_line.h"
#include "platform/ffmpeg/library_options.h"
#include "platform/ffmpeg/output_stream.h"
#include "platform/ffmpeg/run_control.h"
#include "platform/ffmpeg/stream_map.h"
#include "platform/ffmpeg/stream_options.h"
#include "platform/ffmpeg/written_file.h"

#include <cstdint>
#include <limits>
#include <memory>
#include <vector>

namespace veltro::ffmpeg {

/// An output: a muxer that is opened when all its streams are ready, so that a run which fails
/// before leaves nothing. What it wrote is removed unless complete() has succeeded. The run's
/// thread.
class OutputFile {
public:
    /// Chooses the format. Opens nothing.
    /// @throws CommandFailed
    OutputFile(const FileArguments &arguments, int index, const RunContext &run);
    ~OutputFile();
    OutputFile(const OutputFile &) = delete;
    OutputFile &operator=(const OutputFile &) = delete;

    [[nodiscard]] AVFormatContext *context() const { return m_context.get(); }
    [[nodiscard]] const FileArguments &arguments() const { return m_arguments; }
    [[nodiscard]] const LibraryOptions &libraryOptions() const { return m_libraryOptions; }
    [[nodiscard]] int index() const { return m_index; }
    [[nodiscard]] const std::vector<std::unique_ptr<OutputStream>> &streams() const
    {
        return m_streams;
    }
    [[nodiscard]] const TimeRange &range() const { return m_range; }
    /// Where the output begins in the inputs' time, in microseconds.
    [[nodiscard]] std::int64_t start() const { return m_range.start.value_or(0); }

    /// @throws CommandFailed when an input is this very file, or when the file may not be
    ///         overwritten.
    void checkTarget(const InputFiles &inputs) const;

    OutputStream &addStream(AVMediaType type);

    /// A stream's parameters are known. The last one to be ready opens the file and writes the
    /// header and all that waits.
    void streamReady(OutputStream &stream);

    /// Passes a packet through the stream's bitstream filters to the file. Timestamps are in the
    /// stream's packetBase. The packet is left empty.
    /// @throws CommandFailed when it cannot be written.
    void write(OutputStream &stream, AVPacket &packet);
    /// No more packets come: what the bitstream filters hold is written. Once is enough.
    void finish(OutputStream &stream);

    /// Writes the end and closes the file, which is kept from then on.
    /// @throws CommandFailed
    void complete();

    [[nodiscard]] bool isFull() const; ///< -fs is reached
    [[nodiscard]] std::int64_t size() const;

private:
    void initialiseFilter(OutputStream &stream);
    void drainFilter(OutputStream &stream, AVPacket &packet);
    [[nodiscard]] bool opensItself() const;
    void begin();
    void openTarget();
    void queueOrMux(OutputStream &stream, AVPacket &packet);
    void enqueue(OutputStream &stream, AVPacket &packet);
    void mux(OutputStream &stream, AVPacket &packet);
    void straighten(OutputStream &stream, AVPacket &packet) const;
    void reportProgress(const OutputStream &stream) const;
    void checkRefusal() const;

    const RunContext &m_run;
    const FileArguments m_arguments;
    const int m_index;
    LibraryOptions m_libraryOptions;
    TimeRange m_range;
    std::int64_t m_sizeLimit = std::numeric_limits<std::int64_t>::max();
    OutputContextPtr m_context;
    std::unique_ptr<WrittenFile> m_target;
    std::vector<std::unique_ptr<OutputStream>> m_streams;
    bool m_hasBegun = false;
};

}
