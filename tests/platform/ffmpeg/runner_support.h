// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once
#include "platform/ffmpeg/media_tools.h"
#include "tests/platform/ffmpeg/stock_tool.h"

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <string>
#include <vector>

namespace veltro::ffmpeg {

/// Arguments as the program passes them.
[[nodiscard]] std::vector<std::string> argumentsOf(const QStringList &arguments);
/// Splits a command by blanks; none of the words used here holds one.
[[nodiscard]] QStringList wordsOf(const char *command);

/// Runs a command line in process, in a session of its own.
[[nodiscard]] ToolAnswer runInProcess(const QStringList &arguments);

[[nodiscard]] QByteArray lastLineOf(const QByteArray &log);
[[nodiscard]] QByteArray contentOf(const QString &path);

/// What ffprobe says of a file's streams: the named entries, a line for each stream.
[[nodiscard]] QStringList streamFacts(const QString &path, const QString &entries);
/// The packets of one stream: their times and a digest of their data, a line for each.
[[nodiscard]] QStringList packetsOf(const QString &path, const QString &stream);

}
