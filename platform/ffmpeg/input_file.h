// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once
#include "platform/ffmpeg/av_ptr.h"
#include "platform/ffmpeg/command_line.h"
#include "platform/ffmpeg/input_loop.h"
#include "platform/ffmpeg/input_sources.h"
#include "platform/ffmpeg/input_timeline.h"
#include "platform/ffmpeg/library_options.h"
#include "platform/ffmpeg/run_control.h"
#include "platform/ffmpeg/safe_input.h"
#include "platform/ffmpeg/stream_options.h"

#include <chrono>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace veltro::ffmpeg {

/// One stream of an input, and what was said of it on the command line.
struct InputStream {
    AVFormatContext *file = nullptr; ///< owned by the InputFile
    AVStream *stream = nullptr;      ///< owned by file
    int fileIndex = 0;
    const AVCodec *decoder = nullptr; ///< null when the libraries have none
    DictionaryPtr decoderOptions;
    AVRational frameRate{0, 1};         ///< -r before the input; 0/1 when not given
    double timestampScale = 1;          ///< -itsscale
    bool rotates = true;                ///< whether decoded pictures are turned as the file asks
    bool isDisabled = false;            ///< by -vn and its kin: it cannot be mapped
    AVDiscard discard = AVDISCARD_NONE; ///< what of the stream is read when it is used
    bool isUsed = false;
    bool sawPacket = false;
    bool isUnwrapped = false;
    StreamClock clock;

    [[nodiscard]] AVMediaType type() const { return stream->codecpar->codec_type; }
    [[nodiscard]] bool isPicture() const
    {
        return stream->disposition & AV_DISPOSITION_ATTACHED_PIC;
    }
};

/// An open input: a demuxer whose packets come out on the run's line of time. The run's thread.
class InputFile {
public:
    /// Opens the file, reads what its streams are and seeks to where -ss wants.
    /// @throws CommandFailed in the tool's words.
    InputFile(const FileArguments &arguments, int index, const RunContext &run);

    [[nodiscard]] AVFormatContext *context() const { return m_context.get(); }
    [[nodiscard]] const std::string &url() const { return m_url; }
    [[nodiscard]] std::vector<InputStream> &streams() { return m_streams; }
    [[nodiscard]] const TimeRange &range() const { return m_range; }
    /// Whether what is read comes from this file, or from it among others. Any thread.
    [[nodiscard]] bool readsFrom(const std::string &path) const { return m_sources->has(path); }
    [[nodiscard]] bool isAccurate() const { return m_isAccurate; } ///< -accurate_seek
    /// What is added to the file's timestamps at the start, in microseconds.
    [[nodiscard]] std::int64_t offset() const { return m_offset; }

    /// Makes a stream's packets come out of read().
    /// @param copied whether they go on undecoded.
    static void use(InputStream &stream, bool copied);

    /// Lets the demuxer skip what no used stream belongs to. Before the first read().
    void skipUnusedPrograms();

    /// The next packet of a used stream, with corrected timestamps. @returns false at the end; a
    /// file that breaks off ends there.
    /// @throws CommandCancelled
    [[nodiscard]] bool read(AVPacket &packet);

private:
    void forceDecoders(const FileArguments &arguments);
    void readStreams(const FileArguments &arguments, const LibraryOptions &options);
    void describeStream(const FileArguments &arguments, const LibraryOptions &options,
                        AVStream &stream);
    void settleStart(const FileArguments &arguments);
    void seek(const FileArguments &arguments);
    [[nodiscard]] bool readUsed(AVPacket &packet);
    [[nodiscard]] int readAny(AVPacket &packet);
    void keepPace();

    const RunContext &m_run;
    const std::string m_url;
    const int m_index;
    const bool m_isAccurate;
    const bool m_isPaced; ///< -re: read no faster than it plays
    TimeRange m_range;    // settled when the file is open
    InputContextPtr m_context;
    std::optional<InputSources> m_sources;
    std::vector<InputStream> m_streams; // addresses stay: filled once
    std::int64_t m_offset = 0;
    std::optional<InputTimeline> m_timeline;
    std::optional<InputLoop> m_loop;
    std::optional<std::chrono::steady_clock::time_point> m_begun;
    std::int64_t m_furthest = 0; // of all streams, for the pace
};

using InputFiles = std::vector<std::unique_ptr<InputFile>>;

/// Why a file must not be written, in the tool's words: an input is read from it. Any thread.
/// @param url as the file is called, @param path without its protocol.
[[nodiscard]] std::optional<std::string>
refusalToWrite(const std::string &url, const std::string &path, const InputFiles &inputs);

}
