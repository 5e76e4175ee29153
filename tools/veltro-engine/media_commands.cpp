// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "tools/veltro-engine/media_commands.h"

#include "engine/transcode/exported_entries.h"
#include "engine/transcode/playback_transcode.h"
#include "tools/veltro-engine/json_lines.h"

#include <QByteArray>
#include <QList>

#include <cstdio>
#include <vector>

namespace veltro {
namespace {

using Entry = std::int32_t (*)(std::int32_t, const char *const *);

/// Runs an exported entry as the interpreter would, and prints what it left.
int runEntry(Entry entry, const QStringList &arguments)
{
    QList<QByteArray> texts;
    std::vector<const char *> pointers;
    for (const QString &argument : arguments) {
        texts.append(argument.toUtf8());
        pointers.push_back(texts.constLast().constData());
    }
    const std::int32_t code = entry(static_cast<std::int32_t>(pointers.size()), pointers.data());
    std::fputs(VeltroFFmpegOutput(), stdout);
    std::fputs(VeltroFFmpegLog(), stderr);
    return code;
}

}

int ffmpegCommand(const QStringList &arguments)
{
    return runEntry(VeltroFFmpegRun, arguments);
}

int ffprobeCommand(const QStringList &arguments)
{
    return runEntry(VeltroFFprobeRun, arguments);
}

int codecCommand(const QStringList &arguments)
{
    if (arguments.size() != 1) {
        std::fputs("usage: veltro-engine codec FILE\n", stderr);
        return 2;
    }
    const std::string file = arguments.first().toStdString();
    const std::optional<std::string> codec = firstVideoCodec(file);
    QJsonObject answer{{QStringLiteral("needsTranscode"), needsPlaybackTranscode(file)}};
    if (codec) {
        answer.insert(QStringLiteral("codec"), QString::fromStdString(*codec));
    }
    printJsonLine(answer);
    return codec ? 0 : 1;
}

int transcodeCommand(const QStringList &arguments)
{
    if (arguments.size() != 1) {
        std::fputs("usage: veltro-engine transcode FILE\n", stderr);
        return 2;
    }
    const bool replaced = transcodeForPlayback(arguments.first().toStdString());
    printJsonLine({{QStringLiteral("replaced"), replaced}});
    return replaced ? 0 : 1;
}

}
