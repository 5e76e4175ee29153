// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/platform/ffmpeg/stock_tool.h"

#include <QProcess>
#include <QProcessEnvironment>
#include <QRegularExpression>
#include <QTest>

using namespace Qt::StringLiterals;

#ifdef __SANITIZE_THREAD__
// Starting a tool looks to the thread sanitizer as if this process went on behind a fork, after
// which it stops at the first new thread unless told otherwise.
extern "C" const char *__tsan_default_options();
extern "C" const char *__tsan_default_options()
{
    return "die_after_fork=0";
}
#endif

namespace veltro::ffmpeg {

ToolAnswer runTool(const QString &program, const QStringList &arguments, const QString &folder)
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(u"LC_ALL"_s, u"C.UTF-8"_s);
    QProcess process;
    process.setProcessEnvironment(environment);
    process.setWorkingDirectory(folder);
    process.setStandardInputFile(QProcess::nullDevice());
    process.start(program, arguments);
    process.waitForFinished(-1);
    const bool ended =
        process.error() != QProcess::FailedToStart && process.exitStatus() == QProcess::NormalExit;
    return {ended ? process.exitCode() : -1, process.readAllStandardOutput(),
            process.readAllStandardError()};
}

bool makeMedia(const QStringList &arguments, const QString &folder)
{
    const QStringList always{u"-hide_banner"_s, u"-v"_s, u"error"_s, u"-y"_s};
    const ToolAnswer answer = runTool(u"ffmpeg"_s, always + arguments, folder);
    return QTest::qVerify(answer.code == 0, "ffmpeg makes the media", answer.log.constData(),
                          __FILE__, __LINE__);
}

bool makeMedia(const QString &command, const QString &folder)
{
    return makeMedia(QProcess::splitCommand(command), folder);
}

QByteArray comparable(const QByteArray &log)
{
    static const QRegularExpression address(u"@ 0x[0-9a-f]+"_s);
    return QString::fromUtf8(log).replace(address, u"@ 0x0"_s).toUtf8();
}

}
