// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once
#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QFile>
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
        QFile file(m_folder.filePath(QStringLiteral("bus.conf")));
        if (!file.open(QIODevice::WriteOnly)) {
            return false;
        }
        file.write("<busconfig><type>session</type><listen>unix:dir=" + m_folder.path().toUtf8() +
                   "</listen><auth>EXTERNAL</auth><servicedir>" + m_folder.path().toUtf8() +
                   "</servicedir><policy context=\"default\"><allow send_destination=\"*\" "
                   "eavesdrop=\"true\"/><allow eavesdrop=\"true\"/>"
                   "<allow own=\"*\"/></policy></busconfig>");
        file.close();
        m_daemon.setProcessChannelMode(QProcess::SeparateChannels);
        m_daemon.start(QStringLiteral("dbus-daemon"),
                       {QStringLiteral("--config-file=") + file.fileName(),
                        QStringLiteral("--nofork"), QStringLiteral("--print-address")});
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
