// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once
#include "platform/ffmpeg/command_failed.h"
#include "platform/ffmpeg/h264_encoder.h"
#include "platform/ffmpeg/libav.h"
#include "platform/ffmpeg/media_tools.h"
#include "platform/ffmpeg/session_log.h"

#include <atomic>
#include <cstdint>
#include <string_view>

namespace veltro::ffmpeg {

class MuxerFiles;

/// What a run shares with those who watch it: whether it shall stop, and how far it is. Any thread.
class RunControl {
public:
    void cancel() { m_cancelled.store(true, std::memory_order_relaxed); }
    [[nodiscard]] bool isCancelled() const { return m_cancelled.load(std::memory_order_relaxed); }

    /// @throws CommandCancelled
    void check() const
    {
        if (isCancelled()) {
            throw CommandCancelled();
        }
    }

    /// Lets the libraries' own waits and reads end when the run is cancelled.
    [[nodiscard]] AVIOInterruptCB interrupt()
    {
        return {[](void *self) -> int { return static_cast<RunControl *>(self)->isCancelled(); },
                this};
    }

    void setProgress(std::int64_t bytes, std::int64_t microsecondsWritten)
    {
        m_bytes.store(bytes, std::memory_order_relaxed);
        m_microseconds.store(microsecondsWritten, std::memory_order_relaxed);
    }
    [[nodiscard]] RunProgress progress() const
    {
        return {m_bytes.load(std::memory_order_relaxed),
                static_cast<double>(m_microseconds.load(std::memory_order_relaxed)) / AV_TIME_BASE};
    }

    /// Where the run's muxers open files by themselves; none while there is no run. Set by the
    /// run's thread before it makes a muxer.
    void setMuxerFiles(MuxerFiles *files) { m_muxerFiles = files; }
    [[nodiscard]] MuxerFiles *muxerFiles() const { return m_muxerFiles; }

    /// What decoders could make of their packets; the run's thread.
    void countDecoded(std::int64_t frames, std::int64_t errors)
    {
        m_frames += frames;
        m_errors += errors;
    }
    /// Forgets an attempt whose result is not wanted; the run's thread.
    void startAgain()
    {
        m_frames = m_errors = 0;
        setProgress(0, 0);
    }
    /// Whether more than this share of what was decoded was damaged.
    [[nodiscard]] bool isDamaged(double highestRate) const
    {
        const auto errors = static_cast<double>(m_errors);
        return (static_cast<double>(m_frames) + errors) * highestRate < errors;
    }

private:
    MuxerFiles *m_muxerFiles = nullptr;
    std::int64_t m_frames = 0; // the run's thread
    std::int64_t m_errors = 0; // the run's thread
    std::atomic<bool> m_cancelled = false;
    std::atomic<std::int64_t> m_bytes = 0;
    std::atomic<std::int64_t> m_microseconds = 0;
};

/// What every part of a run needs; it outlives them all. The run's own thread, except for what
/// says otherwise.
struct RunContext {
    SessionLog &log;
    RunControl &control;
    bool copiesTimestamps = false;    ///< -copyts
    bool startsAtZero = false;        ///< -start_at_zero
    bool ignoresUnknown = false;      ///< -ignore_unknown
    bool copiesUnknown = false;       ///< -copy_unknown
    bool stopsOnError = false;        ///< -xerror
    bool overwrites = false;          ///< -y
    double highestErrorRate = 2. / 3; ///< share of decoding errors above which a run has failed
    H264EncoderList h264Encoders = knownH264Encoders; ///< of the playback transcode
    bool avoidsHardware = false;                      ///< since it has failed

    void info(std::string_view line) const { say(AV_LOG_INFO, line); }
    void warn(std::string_view line) const { say(AV_LOG_WARNING, line); }
    void error(std::string_view line) const { say(AV_LOG_ERROR, line); }

private:
    void say(int level, std::string_view line) const { log.write(level, std::string(line) + '\n'); }
};

}
