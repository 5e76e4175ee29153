// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once
#include "tests/files.h"

#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

namespace veltro {

/// A message bus of the test's own. What is started after start() finds it under the variable's
/// name, QDBusConnection included when it was not asked before.
class PrivateBus {
public:
    enum class Kind { session, system };

    explicit PrivateBus(Kind kind = Kind::session) : m_kind(kind) {}
    ~PrivateBus()
    {
        m_daemon.kill();
        m_daemon.waitForFinished();
    }

    /// Where .service files of programs that the bus starts may be put.
    [[nodiscard]] QString serviceFolder() const { return m_folder.path(); }

    [[nodiscard]] bool start()
    {
        const QString file = m_folder.filePath(QStringLiteral("bus.conf"));
        const QByteArray folder = m_folder.path().toUtf8();
        if (!test::writeFile(file, "<busconfig><type>session</type><listen>unix:dir=" + folder +
                                       "</listen><auth>EXTERNAL</auth><servicedir>" + folder +
                                       "</servicedir><policy context=\"default\">"
                                       "<allow send_destination=\"*\" eavesdrop=\"true\"/>"
                                       "<allow eavesdrop=\"true\"/><allow own=\"*\"/></policy>"
                                       "</busconfig>")) {
            return false;
        }
        m_daemon.setProcessChannelMode(QProcess::SeparateChannels);
        m_daemon.start(QStringLiteral("dbus-daemon"),
                       {QStringLiteral("--config-file=") + file, QStringLiteral("--nofork"),
                        QStringLiteral("--print-address")});
        while (!m_daemon.canReadLine()) {
            if (!m_daemon.waitForReadyRead(20'000)) {
                return false;
            }
        }
        m_address = m_daemon.readLine().trimmed();
        return qputenv(m_kind == Kind::session ? "DBUS_SESSION_BUS_ADDRESS"
                                               : "DBUS_SYSTEM_BUS_ADDRESS",
                       m_address);
    }

    [[nodiscard]] QByteArray address() const { return m_address; }

private:
    const Kind m_kind;
    QTemporaryDir m_folder;
    QProcess m_daemon;
    QByteArray m_address;
};

/// Waits until somebody on the bus has the name.
inline bool waitForName(const QDBusConnection &bus, const QString &name)
{
    return QTest::qWaitFor([&] { return bus.interface()->isServiceRegistered(name).value(); },
                           30'000);
}

}
