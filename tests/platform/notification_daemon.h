// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once
#include "tests/platform/private_bus.h"

#include <QDBusArgument>
#include <QDBusMessage>

namespace veltro {

/// A notice as the daemon has it.
struct ShownNotice {
    QString summary;
    QString body;
    QString category;
    bool operator==(const ShownNotice &) const = default;
};

/// A real notification daemon that comes and goes, on a session bus and a display of its own.
class NotificationDaemon {
public:
    ~NotificationDaemon()
    {
        m_daemon.kill();
        m_daemon.waitForFinished();
        m_display.kill();
        m_display.waitForFinished();
    }

    /// Makes the bus and the display. REQUIRES: nobody has asked for the session bus yet.
    [[nodiscard]] bool prepare()
    {
        m_display.setStandardErrorFile(QProcess::nullDevice());
        m_display.start(QStringLiteral("Xvfb"), {QStringLiteral("-displayfd"), QStringLiteral("1"),
                                                 QStringLiteral("-nolisten"), QStringLiteral("tcp"),
                                                 QStringLiteral("-screen"), QStringLiteral("0"),
                                                 QStringLiteral("640x480x24")});
        if (!m_bus.start() ||
            !QTest::qWaitFor([this] { return m_display.canReadLine(); }, 30'000)) {
            return false;
        }
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(QStringLiteral("DISPLAY"),
                           u':' + QString::fromLatin1(m_display.readLine().trimmed()));
        m_daemon.setProcessEnvironment(environment);
        return true;
    }

    /// @param markup "full", or "no" for a daemon that shows all texts as they are
    [[nodiscard]] bool start(const QByteArray &markup)
    {
        const QString file = m_folder.filePath(QStringLiteral("dunstrc"));
        if (!test::writeFile(file, "[global]\nstack_duplicates = false\nmarkup = " + markup +
                                       "\nformat = \"%s\\n%b\"\n")) {
            return false;
        }
        m_daemon.setStandardErrorFile(QProcess::nullDevice());
        m_daemon.start(QStringLiteral("dunst"), {QStringLiteral("-conf"), file});
        return waitForName(QDBusConnection::sessionBus(), service());
    }

    [[nodiscard]] bool stop()
    {
        if (m_daemon.state() != QProcess::NotRunning) {
            m_daemon.terminate();
            m_daemon.waitForFinished();
        }
        return QTest::qWaitFor([] {
            return !QDBusConnection::sessionBus()
                        .interface()
                        ->isServiceRegistered(service())
                        .value();
        });
    }

    /// All that it was given since it started, oldest first; none of it is on the screen then.
    [[nodiscard]] QList<ShownNotice> takeShown() const
    {
        (void)call("NotificationCloseAll");
        const QDBusMessage answer = call("NotificationListHistory");
        QList<ShownNotice> shown;
        const auto list = answer.arguments().value(0).value<QDBusArgument>();
        list.beginArray();
        while (!list.atEnd()) {
            QVariantMap entry;
            list >> entry;
            shown.prepend({entry.value(QStringLiteral("summary")).toString(),
                           entry.value(QStringLiteral("body")).toString(),
                           entry.value(QStringLiteral("category")).toString()});
        }
        list.endArray();
        return shown;
    }

private:
    static QString service() { return QStringLiteral("org.freedesktop.Notifications"); }

    static QDBusMessage call(const char *method)
    {
        return QDBusConnection::sessionBus().call(QDBusMessage::createMethodCall(
            service(), QStringLiteral("/org/freedesktop/Notifications"),
            QStringLiteral("org.dunstproject.cmd0"), QLatin1String(method)));
    }

    PrivateBus m_bus;
    QTemporaryDir m_folder;
    QProcess m_display;
    QProcess m_daemon;
};

}
