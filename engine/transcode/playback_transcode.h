// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once
#include <filesystem>
#include <optional>
#include <string>

namespace veltro {

// Makes a downloaded file playable: video that the built-in player may not decode becomes H.264.
// Every function blocks and runs on the thread of the download run; none of them throws.

/// The lower-cased codec name of the first video stream that has one.
[[nodiscard]] std::optional<std::string> firstVideoCodec(const std::filesystem::path &file);

/// Whether the file's video is in a codec that has to be re-encoded. A file without a known video
/// codec counts as one: the runner's own refusal decides then.
[[nodiscard]] bool needsPlaybackTranscode(const std::filesystem::path &file);

/// Re-encodes the video to H.264 beside the file, then puts the result in its place under the
/// same name. @returns false when the file stays as it was; nothing else is left behind.
bool transcodeForPlayback(const std::filesystem::path &file);

}
