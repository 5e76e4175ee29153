// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
// A developer's way into the engine without the window: each command prints JSON lines, or what
// the tool of that name would print.
#include "engine/runtime/environment.h"
#include "tools/veltro-engine/engine_commands.h"
#include "tools/veltro-engine/library_commands.h"
#include "tools/veltro-engine/media_commands.h"
#include "tools/veltro-engine/submit_command.h"

#include <QCoreApplication>
#include <QHash>
#include <QTimer>

#include <cstdio>
#include <functional>

namespace veltro {
namespace {

using EngineCommand = QCoro::Task<int> (*)(QStringList);
using MediaCommand = int (*)(const QStringList &);

const QHash<QString, EngineCommand> engineCommands{
    {QStringLiteral("probe"), probeCommand},   {QStringLiteral("save"), saveCommand},
    {QStringLiteral("submit"), submitCommand}, {QStringLiteral("ready"), readyCommand},
    {QStringLiteral("python"), pythonCommand}, {QStringLiteral("library"), libraryCommand},
};

const QHash<QString, MediaCommand> mediaCommands{
    {QStringLiteral("ffmpeg"), ffmpegCommand}, {QStringLiteral("ffprobe"), ffprobeCommand},
    {QStringLiteral("codec"), codecCommand},   {QStringLiteral("transcode"), transcodeCommand},
    {QStringLiteral("still"), stillCommand},   {QStringLiteral("duration"), durationCommand},
};

QCoro::Task<void> runAndQuit(EngineCommand command, QStringList arguments)
{
    const int code = co_await command(std::move(arguments));
    QCoreApplication::exit(code);
}

int usage()
{
    std::fputs("usage: veltro-engine probe URL… [--cookies FILE]\n"
               "       veltro-engine save URL… --dir FOLDER [--format SELECTOR] [--template TEXT]\n"
               "                     [--cookies FILE] [--cancel-after-bytes COUNT] [--progress]\n"
               "       veltro-engine submit URL… [--format SELECTOR]\n"
               "       veltro-engine library list [--limit COUNT] | library search TEXT\n"
               "       veltro-engine ready\n"
               "       veltro-engine python SCRIPT ARG…\n"
               "       veltro-engine ffmpeg ARG… | ffprobe ARG… | codec FILE | transcode FILE\n"
               "       veltro-engine still FILE IMAGE | duration FILE\n",
               stderr);
    return 2;
}

}
}

int main(int argc, char *argv[])
{
    using namespace veltro;
    setInterpreterEnvironment(); // before any thread that may read the environment
    const QCoreApplication application(argc, argv);
    QStringList arguments = QCoreApplication::arguments().mid(1);
    if (arguments.isEmpty()) {
        return usage();
    }
    const QString name = arguments.takeFirst();
    if (const MediaCommand command = mediaCommands.value(name)) {
        return command(arguments);
    }
    const EngineCommand command = engineCommands.value(name);
    if (command == nullptr) {
        return usage();
    }
    QTimer::singleShot(0, [command, &arguments] { runAndQuit(command, arguments); });
    return QCoreApplication::exec();
}
