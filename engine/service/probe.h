// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once
#include "engine/media/media_info.h"

#include <QUrl>

#include <optional>

namespace veltro {

class EngineState;

/// Reads what a page offers. Blocks for as long as yt-dlp does.
/// REQUIRES: inside an interpreter job of the probe queue.
/// @throws EngineError probeFailed or bootstrapFailed, and nothing else.
[[nodiscard]] MediaInfo probePage(const EngineState &state, const QUrl &url,
                                  const std::optional<QUrl> &cookies);

}
