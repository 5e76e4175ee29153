// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once
#include "tests/files.h"
#include "tests/rows.h"

#include <QByteArray>
#include <QString>
#include <QStringList>

namespace veltro::ffmpeg {

using test::contentOf;
using test::row;
using test::writeFile;

/// What a stock tool did. Tests make their media with it and compare our answers with its own; the
/// program never starts it.
struct ToolAnswer {
    int code = -1;
    QByteArray output;
    QByteArray log;
};

/// Runs "ffmpeg" or "ffprobe" in English and waits for its end.
[[nodiscard]] ToolAnswer runTool(const QString &program, const QStringList &arguments,
                                 const QString &folder = {});

/// Makes media with the stock tool; fails the running test, with the tool's log, if it cannot.
/// @returns whether it could.
[[nodiscard]] bool makeMedia(const QStringList &arguments, const QString &folder = {});
/// The same for a command as one types it, run in a folder that its names are relative to.
[[nodiscard]] bool makeMedia(const QString &command, const QString &folder);

/// A log with what differs from run to run, the addresses of objects, made equal.
[[nodiscard]] QByteArray comparable(const QByteArray &log);

}
