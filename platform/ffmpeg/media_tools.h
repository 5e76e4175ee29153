// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once
#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>
#include <span>
#include <stdexcept>
#include <string>
#include <vector>

namespace veltro::ffmpeg {

/// What a stream of a file is, as a probe names it.
struct StreamInformation {
    std::string type;  ///< "video", "audio", "subtitle", "data" or "attachment"
    std::string codec; ///< the codec's name; empty when the library knows none
    bool isAttachedPicture = false;
    bool operator==(const StreamInformation &) const = default;
};

/// How far a run is.
struct RunProgress {
    std::int64_t bytesWritten = 0;
    double positionSeconds = 0; ///< of what was written last, from the output's start
};

/// What a finished command leaves: its code and what the tool would have printed.
struct CommandResult {
    int code = 0;
    std::string output; ///< standard output
    std::string log;    ///< standard error
};

/// One ffmpeg command line, run in process. run() is called once; cancel(), progress() and log()
/// may be called from any thread while it runs and afterwards.
class Session {
public:
    virtual ~Session() = default;
    /// Blocks until the command ends. Arguments are UTF-8 and leave out the program's name.
    /// @returns 0; 255 when cancelled; another positive code for a failure. Never throws.
    virtual int run(std::span<const std::string> arguments) noexcept = 0;
    virtual void cancel() noexcept = 0;
    [[nodiscard]] virtual RunProgress progress() const noexcept = 0;
    /// What the tool would have written to standard error, capped; the last line is the reason of
    /// a failure.
    [[nodiscard]] virtual std::string log() const = 0;
    /// What the tool would have written to standard output (information commands only).
    [[nodiscard]] virtual std::string output() const = 0;
};

/// The FFmpeg libraries as the rest of the program sees them. Any thread.
class MediaTools {
public:
    virtual ~MediaTools() = default;
    [[nodiscard]] virtual std::unique_ptr<Session> makeSession() = 0;
    /// Runs an ffprobe command line in process. Never throws.
    [[nodiscard]] virtual CommandResult probe(std::span<const std::string> arguments) noexcept = 0;
    /// The streams of a local file, in order; nothing when the file cannot be read as media. Reads
    /// no other file than the one named, whatever is in it.
    [[nodiscard]] virtual std::optional<std::vector<StreamInformation>>
    streams(const std::filesystem::path &file) noexcept = 0;
    /// A JPEG of what a player shows of a local file at a time, upright and with square pixels,
    /// reduced to fit into the given size and never enlarged. Short media gives its last picture;
    /// media without pictures of its own gives nothing, and a cover that is attached to sound is
    /// none. Reads no other file; ends after 20 seconds with what it has.
    /// @param quality from 0 to 1.
    [[nodiscard]] virtual std::optional<std::vector<std::uint8_t>>
    still(const std::filesystem::path &file, double seconds, int maxWidth, int maxHeight,
          double quality) noexcept = 0;
    /// How long a local file plays, in seconds, from its header or the times of its packets;
    /// nothing is decoded where the container tells what its streams are. Nothing when nobody
    /// knows. Reads no other file.
    [[nodiscard]] virtual std::optional<double>
    duration(const std::filesystem::path &file) noexcept = 0;

    // For what plays files with these libraries by other means than ours.

    /// The demuxers that a local file may be read by, as a format_whitelist: none that reads files
    /// or addresses named inside the file.
    [[nodiscard]] virtual const char *localDemuxers() const noexcept = 0;
    /// Another user of the libraries has taken their one log callback, at its start or its end:
    /// sessions that run get it back.
    virtual void keepLog() noexcept = 0;
};

/// The module that holds the FFmpeg libraries is missing from the bundle or cannot be loaded.
class MediaToolsMissing : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// Loads the module "veltro-media.so" on first use, so that a process which never touches media
/// does not pay for the libraries behind it (about 60 ms and 28 MiB). A failed load is tried
/// again by the next call.
/// @throws MediaToolsMissing
MediaTools &mediaTools();

}
