// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "tools/veltro-engine/engine_commands.h"

#include "engine/service/yt_dlp_service.h"
#include "platform/log.h"
#include "tools/veltro-engine/json_lines.h"
#include "tools/veltro-engine/python_script.h"
#include "tools/veltro-engine/save_follower.h"

#include <QCommandLineParser>
#include <QDir>
#include <QJsonObject>

#include <cstdio>
#include <memory>

namespace veltro {
namespace {

/// Parses; says what is wrong on standard error. At least one address is wanted.
bool parse(QCommandLineParser &parser, const QStringList &arguments)
{
    const QStringList all = QStringList(QStringLiteral("veltro-engine")) + arguments;
    const bool understood = parser.parse(all);
    if (!understood || parser.positionalArguments().isEmpty()) {
        const QString reason =
            understood ? QStringLiteral("an address is needed") : parser.errorText();
        std::fprintf(stderr, "veltro-engine: %s\n", qPrintable(reason));
        return false;
    }
    return true;
}

QCommandLineOption option(const char *name, const char *value)
{
    return QCommandLineOption(QLatin1String(name), QString(), QLatin1String(value));
}

std::optional<QUrl> fileOption(const QCommandLineParser &parser, const char *name)
{
    const QString value = parser.value(QLatin1String(name));
    return value.isEmpty()
               ? std::nullopt
               : std::optional(QUrl::fromLocalFile(QDir::current().absoluteFilePath(value)));
}

/// The address is taken as typed; what is wrong with it is the engine's to say.
DownloadRequest requestOf(const QCommandLineParser &parser, const QString &address)
{
    DownloadRequest request;
    request.id = QUuid::createUuid();
    request.url = QUrl(address);
    request.formatID = parser.value(QStringLiteral("format"));
    request.cookiesFile = fileOption(parser, "cookies");
    request.outputTemplate = parser.value(QStringLiteral("template"));
    request.downloadsDirectory = *fileOption(parser, "dir");
    request.writeSubtitles = true;
    request.subtitleLanguages = QStringList{QStringLiteral("en")};
    request.extractAudio = false;
    request.audioFormat = QStringLiteral("m4a");
    return request;
}

void addSaveOptions(QCommandLineParser &parser)
{
    QCommandLineOption format = option("format", "selector");
    format.setDefaultValue(QStringLiteral("best"));
    QCommandLineOption name = option("template", "template");
    name.setDefaultValue(QStringLiteral("%(title)s [%(id)s].%(ext)s"));
    parser.addOptions({option("dir", "folder"), format, name, option("cookies", "file"),
                       option("cancel-after-bytes", "count"),
                       QCommandLineOption(QStringLiteral("progress"))});
}

}

QCoro::Task<int> probeCommand(QStringList arguments)
{
    QCommandLineParser parser;
    parser.addOption(option("cookies", "file"));
    if (!parse(parser, arguments)) {
        co_return 2;
    }
    YtDlpService service;
    int code = 0;
    for (const QString &address : parser.positionalArguments()) {
        QJsonObject answer;
        try {
            answer = toJson(co_await service.probe(QUrl(address), fileOption(parser, "cookies")));
        } catch (...) {
            answer = errorToJson(std::current_exception());
            code = 1;
        }
        printJsonLine(answer);
    }
    co_return code;
}

QCoro::Task<int> saveCommand(QStringList arguments)
{
    QCommandLineParser parser;
    addSaveOptions(parser);
    if (!parse(parser, arguments)) {
        co_return 2;
    }
    if (!parser.isSet(QStringLiteral("dir"))) {
        std::fputs("veltro-engine: save needs --dir FOLDER\n", stderr);
        co_return 2;
    }
    std::optional<qint64> cancelAfter;
    if (parser.isSet(QStringLiteral("cancel-after-bytes"))) {
        cancelAfter = parser.value(QStringLiteral("cancel-after-bytes")).toLongLong();
    }
    const bool forAPerson = parser.isSet(QStringLiteral("progress"));
    if (forAPerson) {
        setLogSink([](std::string_view) {}); // its lines would tear the one that is shown
    }
    SaveFollower follower(forAPerson ? SaveFollower::Style::progressLine
                                     : SaveFollower::Style::jsonLines,
                          cancelAfter);
    int code = 0;
    for (const QString &address : parser.positionalArguments()) {
        const bool saved = co_await follower.follow(requestOf(parser, address));
        code = saved ? code : 1;
    }
    co_return code;
}

QCoro::Task<int> readyCommand(QStringList)
{
    YtDlpService service;
    QJsonObject answer{{QStringLiteral("event"), QStringLiteral("ready")}};
    int code = 0;
    try {
        co_await service.ensureBootstrapped();
    } catch (...) {
        answer = errorToJson(std::current_exception());
        code = 1;
    }
    printJsonLine(answer);
    co_return code;
}

QCoro::Task<int> pythonCommand(QStringList arguments)
{
    if (arguments.isEmpty()) {
        std::fputs("usage: veltro-engine python SCRIPT ARG…\n", stderr);
        co_return 2;
    }
    YtDlpService service;
    std::exception_ptr failure;
    try {
        co_await service.ensureBootstrapped();
    } catch (...) {
        failure = std::current_exception();
    }
    if (failure) {
        printJsonLine(errorToJson(failure));
        co_return 1;
    }
    co_return co_await runPythonScript(std::move(arguments));
}

}
