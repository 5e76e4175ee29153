// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "tools/veltro-engine/media_commands.h"

#include "engine/transcode/exported_entries.h"
#include "engine/transcode/playback_transcode.h"
#include "platform/ffmpeg/media_tools.h"
#include "tools/veltro-engine/json_lines.h"

#include <QByteArray>
#include <QFile>
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

int stillCommand(const QStringList &arguments)
{
    if (arguments.size() != 2) {
        std::fputs("usage: veltro-engine still FILE IMAGE\n", stderr);
        return 2;
    }
    const auto image =
        ffmpeg::mediaTools().still(arguments.first().toStdString(), 1.0, 800, 800, 0.7);
    if (!image) {
        return 1;
    }
    QFile file(arguments.last());
    const auto size = static_cast<qint64>(image->size());
    const bool isWritten = file.open(QIODevice::WriteOnly) &&
                           file.write(reinterpret_cast<const char *>(image->data()), size) == size;
    return isWritten ? 0 : 1;
}

int durationCommand(const QStringList &arguments)
{
    if (arguments.size() != 1) {
        std::fputs("usage: veltro-engine duration FILE\n", stderr);
        return 2;
    }
    const auto seconds = ffmpeg::mediaTools().duration(arguments.first().toStdString());
    if (seconds) {
        printJsonLine({{QStringLiteral("seconds"), *seconds}});
    }
    return seconds ? 0 : 1;
}

}
