// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once
#include <QStringList>

namespace veltro {

// The harness's commands that need no interpreter. They block and return the exit code.

/// ffmpeg ARG…: the log on standard error, the runner's code as exit code.
int ffmpegCommand(const QStringList &arguments);

/// ffprobe ARG…: the answer on standard output, the log on standard error.
int ffprobeCommand(const QStringList &arguments);

/// codec F: the first video codec, and whether the file would be transcoded.
int codecCommand(const QStringList &arguments);

/// transcode F: the playback transcode, in place.
int transcodeCommand(const QStringList &arguments);

/// still F OUT: the library's still image of a file, written to OUT.
int stillCommand(const QStringList &arguments);

/// duration F: how long a file plays.
int durationCommand(const QStringList &arguments);

}
