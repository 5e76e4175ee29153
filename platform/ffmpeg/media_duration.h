// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once
#include <filesystem>
#include <optional>

namespace veltro::ffmpeg {

/// What MediaTools::duration() promises. Never throws; any thread.
[[nodiscard]] std::optional<double> readDuration(const std::filesystem::path &file) noexcept;

}
