// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once
#include "platform/ffmpeg/still_jpeg.h"

#include <cstdint>
#include <filesystem>
#include <optional>
#include <vector>

namespace veltro::ffmpeg {

/// What MediaTools::still() promises. Never throws; any thread.
[[nodiscard]] std::optional<std::vector<std::uint8_t>> takeStill(const std::filesystem::path &file,
                                                                 const StillWish &wish) noexcept;

}
