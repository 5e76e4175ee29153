// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/ffmpeg/still_image.h"

#include "platform/ffmpeg/file_look.h"
#include "platform/ffmpeg/still_frame.h"
#include "platform/ffmpeg/still_jpeg.h"

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
    const FileLook look(file, longestLook);
    const std::optional<StillFrame> still =
        look.input() ? findStillFrame(*look.input(), wish.seconds, look.limit()) : std::nullopt;
    return still ? encodeStill(*still, wish) : std::nullopt;
} catch (const std::exception &) {
    return std::nullopt; // out of memory: as good as unreadable
}

}
