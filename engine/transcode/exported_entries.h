// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once
#include <cstdint>

// The plain functions through which code outside the program's own call graph, the interpreter's
// foreign-function interface above all, runs FFmpeg in this process. They are exported from the
// executable under these names. Any thread; none of them throws. Texts are UTF-8.

extern "C" {

/// Runs an ffmpeg command line, without the program's name; null entries are skipped.
/// @returns 0, the command's own code, or -1 when none could be started.
std::int32_t VeltroFFmpegRun(std::int32_t count, const char *const *arguments);

/// The same for an ffprobe command line.
std::int32_t VeltroFFprobeRun(std::int32_t count, const char *const *arguments);

/// What the calling thread's last run wrote to standard output, and to standard error. Valid
/// until that thread's next run; never null.
const char *VeltroFFmpegOutput(void);
const char *VeltroFFmpegLog(void);

/// Cancels the ffmpeg run in progress on the thread with this kernel identifier, if any.
void VeltroFFmpegCancel(std::int64_t threadId);

/// How far the ffmpeg run on that thread is: bytes written and seconds of media.
/// @returns 1, or 0 when no run is in progress there (the values stay untouched).
std::int32_t VeltroFFmpegProgress(std::int64_t threadId, std::int64_t *bytes, double *seconds);
}
