// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once
#include "platform/ffmpeg/libav.h"

#include <cstdint>
#include <vector>

namespace veltro::ffmpeg {

/// Lets an input that has ended begin again (-stream_loop): the packets of a round come in time
/// behind those of the round before. The run's thread.
class InputLoop {
public:
    /// @param rounds how often it begins again; -1 for without end.
    InputLoop(std::int64_t rounds, const AVFormatContext &file);

    /// Moves a packet, as it was read, to its round's place.
    void place(AVPacket &packet);
    /// At the end of the file. @returns whether there is another round, which has begun then.
    [[nodiscard]] bool beginAgain(AVFormatContext &file);

private:
    /// What one stream has covered in all rounds so far, in its time base.
    struct Extent {
        AVRational base{0, 1};
        std::int64_t begin = 0;
        std::int64_t end = 0;
        bool isKnown = false;
    };

    std::int64_t m_rounds;
    std::int64_t m_length = 0; // of the rounds before this one, in microseconds
    bool m_sawPacket = false;  // in this round
    std::vector<Extent> m_streams;
};

}
