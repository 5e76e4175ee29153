// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/ui/display/private_display.h"

#include <QCoreApplication>
#include <QTest>
#include <QWindow>

#include <csignal>
#include <sys/prctl.h>

namespace veltro {
namespace {

constexpr int displayPatience = 30'000;

// A test that crashes leaves nothing behind.
void endWithTheTest(QProcess &process)
{
    process.setChildProcessModifier([] { ::prctl(PR_SET_PDEATHSIG, SIGKILL); });
    process.setStandardErrorFile(QProcess::nullDevice());
}

// Events are handled meanwhile. @returns whether it came to its end.
bool run(QProcess &tool, const QStringList &words)
{
    tool.start(QStringLiteral("xdotool"), words);
    return QTest::qWaitFor([&] { return tool.state() == QProcess::NotRunning; }, displayPatience);
}

void end(QProcess &process)
{
    process.terminate();
    if (!process.waitForFinished(5'000)) {
        process.kill();
        process.waitForFinished();
    }
}

}

PrivateDisplay::PrivateDisplay(QSize size)
{
    endWithTheTest(m_server);
    m_server.start(QStringLiteral("Xvfb"),
                   {QStringLiteral("-displayfd"), QStringLiteral("1"), QStringLiteral("-screen"),
                    QStringLiteral("0"),
                    QStringLiteral("%1x%2x24").arg(size.width()).arg(size.height()),
                    QStringLiteral("-nolisten"), QStringLiteral("tcp")});
    while (!m_server.canReadLine() && m_server.waitForReadyRead(displayPatience)) {}
    const QByteArray number = m_server.readLine().trimmed();
    if (number.isEmpty()) {
        qFatal("there is no display: %s", qPrintable(m_server.errorString()));
    }
    qputenv("DISPLAY", ':' + number);
    qputenv("QT_QPA_PLATFORM", "xcb");
    qunsetenv("WAYLAND_DISPLAY");
    endWithTheTest(m_windowManager);
    m_windowManager.start(QStringLiteral("openbox"), {QStringLiteral("--sm-disable")});
    if (!m_windowManager.waitForStarted(displayPatience)) {
        qFatal("there is no window manager: %s", qPrintable(m_windowManager.errorString()));
    }
}

PrivateDisplay::~PrivateDisplay()
{
    end(m_windowManager);
    end(m_server);
}

void PrivateDisplay::act(const QStringList &words) const
{
    QProcess tool;
    if (!run(tool, words) || tool.exitCode() != 0) {
        qFatal("xdotool does not do: %s", qPrintable(words.join(u' ')));
    }
}

void PrivateDisplay::movePointer(QPoint to) const
{
    QStringList words;
    for (const QPoint step : {to - QPoint(24, 12), to - QPoint(12, 6), to}) {
        words << QStringLiteral("mousemove") << QString::number(step.x())
              << QString::number(step.y());
    }
    act(words);
}

OtherProgram::OtherProgram(const QStringList &arguments)
{
    endWithTheTest(m_process);
    m_process.start(QCoreApplication::applicationDirPath() +
                        QStringLiteral("/veltro-other-program"),
                    arguments);
    next("ready");
}

OtherProgram::~OtherProgram()
{
    end(m_process);
}

QByteArray OtherProgram::next(const QByteArray &beginning)
{
    const auto found = [&] {
        while (m_process.canReadLine()) {
            m_lines.append(m_process.readLine().trimmed());
        }
        while (!m_lines.isEmpty() && !m_lines.constFirst().startsWith(beginning)) {
            m_lines.removeFirst();
        }
        return !m_lines.isEmpty();
    };
    if (!QTest::qWaitFor(found, displayPatience)) {
        qWarning("the other program never said \"%s\"", beginning.constData());
        return {};
    }
    return m_lines.takeFirst().mid(beginning.size()).trimmed();
}

QPoint middleOf(const QWindow &window)
{
    return window.mapToGlobal(QPoint(window.width() / 2, window.height() / 2));
}

}
