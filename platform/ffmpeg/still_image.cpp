// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/ffmpeg/still_image.h"

#include "platform/ffmpeg/locale_scope.h"
#include "platform/ffmpeg/safe_input.h"
#include "platform/ffmpeg/session_log.h"
#include "platform/ffmpeg/still_frame.h"
#include "platform/ffmpeg/still_jpeg.h"
#include "platform/ffmpeg/time_limit.h"

#include <chrono>
#include <exception>

namespace veltro::ffmpeg {
namespace {

// A frame of 8K AV1 a second into a file with one key frame takes about five seconds on two cores.
constexpr std::chrono::seconds longestLook(20);

}

std::optional<std::vector<std::uint8_t>> takeStill(const std::filesystem::path &file,
                                                   const StillWish &wish) noexcept
try {
    const LocaleScope locale;
    SessionLog log; // takes the lines so that no other log gets them
    log.setLevel(AV_LOG_QUIET);
    const SessionLog::Scope bound(log);
    TimeLimit limit(longestLook);
    LocalInputOptions how;
    how.log = &log;
    how.interrupt = limit.interrupt();
    InputContextPtr input;
    if (openLocalInput("file:" + file.native(), how, input) < 0) {
        return std::nullopt;
    }
    const std::optional<StillFrame> still = findStillFrame(*input, wish.seconds, limit);
    return still ? encodeStill(*still, wish) : std::nullopt;
} catch (const std::exception &) {
    return std::nullopt; // out of memory: as good as unreadable
}

}
