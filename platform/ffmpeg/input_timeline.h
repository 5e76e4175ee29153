// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once
#include "platform/ffmpeg/libav.h"
#include "platform/ffmpeg/timestamp.h"

#include <cstdint>

namespace veltro::ffmpeg {

/// Where one input stream is, in microseconds: at the packet read last, and where the next one is
/// expected to be. Timestamps that a container leaves out are filled in from here.
class StreamClock {
public:
    /// @param copied whether the packets go on undecoded: a missing start is then taken from
    ///        the first packet.
    void begin(const AVStream &stream, bool copied);

    /// Moves on to a packet, whose timestamps are already corrected.
    void advance(const AVPacket &packet);

    [[nodiscard]] std::int64_t position() const { return m_dts; }
    [[nodiscard]] std::int64_t expected() const { return m_nextDts; } ///< or noTimestamp
    /// The stream's rate as the user states it (-r); overrides durations.
    void setFrameRate(AVRational rate) { m_forcedRate = rate; }

private:
    void seeFirst(const AVPacket &packet);
    [[nodiscard]] std::int64_t videoStep(const AVPacket &packet) const;

    const AVStream *m_stream = nullptr;
    bool m_copied = false;
    bool m_sawFirst = false;
    AVRational m_forcedRate{0, 1};
    std::int64_t m_dts = noTimestamp;
    std::int64_t m_nextDts = noTimestamp;
};

/// The timestamps of one input file, brought onto the run's line: shifted to begin at zero,
/// counters that wrapped around unwrapped, and, in formats whose timestamps may jump, jumps closed.
class InputTimeline {
public:
    static constexpr std::int64_t largestJump = 10 * std::int64_t{1'000'000};
    static constexpr std::int64_t largestError = std::int64_t{1'000'000} * 3600 * 30;

    /// @param offset what is added to every timestamp, in microseconds.
    InputTimeline(AVFormatContext *file, std::int64_t offset, bool keepsTimestamps);

    [[nodiscard]] std::int64_t offset() const { return m_offset; }

    /// What is known of a packet's stream besides the packet.
    struct StreamState {
        StreamClock &clock;
        bool &isUnwrapped; ///< whether wrap-around no longer needs to be looked for
        double scale;      ///< -itsscale
    };
    /// Corrects a packet's timestamps, which stay in its stream's time base.
    void correct(AVPacket &packet, StreamState stream);

private:
    void unwrap(AVPacket &packet, StreamState &stream);
    void settleStart(const StreamClock &clock);
    void closeGapBetweenStreams(AVPacket &packet, const AVStream &stream);
    void closeGapInStream(AVPacket &packet, const AVStream &stream, const StreamClock &clock);
    static void dropImpossible(AVPacket &packet, const AVStream &stream, std::int64_t expected);
    void shift(AVPacket &packet, const AVStream &stream, std::int64_t delta);

    AVFormatContext *const m_file;
    const bool m_keepsTimestamps;
    std::int64_t m_offset;
    std::int64_t m_last = noTimestamp;
};

}
