// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once
#include "platform/ffmpeg/media_tools.h"

#include <cstdint>
#include <span>
#include <string>

namespace veltro {

/// Runs one ffmpeg command line in process, on the calling thread, and keeps what it printed. A
/// failure's last line goes to the log. The code is -1 when no run could be started.
/// Any thread; does not throw.
[[nodiscard]] ffmpeg::CommandResult runFFmpegCommand(std::span<const std::string> arguments);

/// The same, for callers who need only the code.
[[nodiscard]] std::int32_t runFFmpeg(std::span<const std::string> arguments);

/// Cancels the run in progress on the thread with this kernel identifier, if there is one.
void cancelFFmpeg(std::int64_t threadId);

/// How far the run on that thread is; nothing when none is in progress there.
[[nodiscard]] std::optional<ffmpeg::RunProgress> ffmpegProgress(std::int64_t threadId);

}
