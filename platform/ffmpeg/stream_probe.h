// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once
#include "platform/ffmpeg/media_tools.h"

#include <filesystem>
#include <optional>
#include <vector>

namespace veltro::ffmpeg {

/// The streams of a local file, or nothing when it cannot be read as media. Most files tell them in
/// their first bytes; only one that does not is read further. Never throws; any thread.
[[nodiscard]] std::optional<std::vector<StreamInformation>>
probeStreams(const std::filesystem::path &file) noexcept;

}
