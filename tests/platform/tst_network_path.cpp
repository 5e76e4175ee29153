// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/network_path.h"
#include "platform/serial_queue.h"
#include "tests/platform/private_bus.h"

#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QDBusReply>
#include <QTest>

#include <mutex>
#include <vector>

using namespace veltro;

namespace {

const QString manager = QStringLiteral("org.freedesktop.NetworkManager");
const QString managerPath = QStringLiteral("/org/freedesktop/NetworkManager");

// The states of the network manager, and its kinds of metering.
constexpr uint disconnected = 20, connectedLocal = 50, connectedSite = 60, connectedGlobal = 70;
constexpr uint meteredYes = 1, meteredNo = 2, meteredGuessYes = 3;

/// What a monitor reports on a queue, oldest first.
class Watch {
public:
    Watch()
    {
        monitor.start(queue, [this](NetworkPath path) {
            const std::lock_guard guard(m_lock);
            m_isOnQueue = queue.isCurrent();
            m_paths.push_back(path);
        });
    }
    /// Whether the last one came on the queue.
    [[nodiscard]] bool isOnQueue() const
    {
        const std::lock_guard guard(m_lock);
        return m_isOnQueue;
    }
    [[nodiscard]] std::vector<NetworkPath> all() const
    {
        const std::lock_guard guard(m_lock);
        return m_paths;
    }
    [[nodiscard]] bool endWith(NetworkPath path) const
    {
        const std::lock_guard guard(m_lock);
        return !m_paths.empty() && m_paths.back() == path;
    }

private:
    mutable std::mutex m_lock;
    bool m_isOnQueue = false;
    std::vector<NetworkPath> m_paths;

public:
    SerialQueue queue{"test.path"};
    NetworkPathMonitor monitor;
};

constexpr NetworkPath wired{true, false, false};
constexpr NetworkPath wiFi{true, false, true};
constexpr NetworkPath meteredWiFi{true, true, true};

}

/// Against a simulated network manager on a system bus of its own.
class TestNetworkPath : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void initTestCase();
    void cleanupTestCase();
    void theFirstReportTellsThePathAsItIs();
    void aChangeOfTheConnectionIsReportedOnceOnTheQueue();
    void onlyANetworkWithAWayOutIsAPath_data();
    void onlyANetworkWithAWayOutIsAPath();
    void meteringIsReportedWhetherKnownOrGuessed();
    void nothingIsReportedAfterCancel();

private:
    QVariant ask(const QString &method, const QVariantList &arguments);
    void setProperties(const QVariantMap &properties);
    void connectThrough(const QDBusObjectPath &connection, const QString &type);

    PrivateBus m_bus{PrivateBus::Kind::system};
    QProcess m_manager;
    QDBusObjectPath m_wired, m_wiFi;
};

QVariant TestNetworkPath::ask(const QString &method, const QVariantList &arguments)
{
    QDBusMessage call = QDBusMessage::createMethodCall(
        manager, managerPath, QStringLiteral("org.freedesktop.DBus.Mock"), method);
    call.setArguments(arguments);
    const QDBusMessage answer = QDBusConnection::systemBus().call(call);
    if (answer.type() == QDBusMessage::ErrorMessage) {
        qWarning("%s: %s", qPrintable(method), qPrintable(answer.errorMessage()));
    }
    return answer.arguments().value(0);
}

void TestNetworkPath::setProperties(const QVariantMap &properties)
{
    ask(QStringLiteral("UpdateProperties"), {manager, properties});
}

void TestNetworkPath::connectThrough(const QDBusObjectPath &connection, const QString &type)
{
    // The simulation's own call for several properties knows no paths.
    QDBusMessage set = QDBusMessage::createMethodCall(
        manager, managerPath, QStringLiteral("org.freedesktop.DBus.Properties"),
        QStringLiteral("Set"));
    set << manager << QStringLiteral("PrimaryConnection")
        << QVariant::fromValue(QDBusVariant(QVariant::fromValue(connection)));
    QCOMPARE(QDBusConnection::systemBus().call(set).type(), QDBusMessage::ReplyMessage);
    setProperties({{QStringLiteral("PrimaryConnectionType"), type}});
}

void TestNetworkPath::initTestCase()
{
    QVERIFY(m_bus.start());
    m_manager.setStandardOutputFile(QProcess::nullDevice());
    m_manager.setStandardErrorFile(QProcess::nullDevice());
    m_manager.start(QStringLiteral("/usr/bin/python3"),
                    {QStringLiteral("-m"), QStringLiteral("dbusmock"), QStringLiteral("--system"),
                     QStringLiteral("--template"), QStringLiteral("networkmanager")});
    QVERIFY(waitForName(QDBusConnection::systemBus(), manager));

    constexpr int activated = 100;
    const auto device = [&](const char *method, const char *name) {
        return ask(QLatin1String(method),
                   {QString::fromLatin1(name), QString::fromLatin1(name), activated});
    };
    const QString ethernet = device("AddEthernetDevice", "eth0").toString();
    const QString wireless = device("AddWiFiDevice", "wlan0").toString();
    // The simulation wants a stored connection behind an active one; which does not matter here.
    constexpr uint infrastructure = 2, megahertz = 2425, rate = 5400, openToAll = 0;
    constexpr uchar strength = 82;
    ask(QStringLiteral("AddAccessPoint"),
        {wireless, QStringLiteral("point"), QStringLiteral("net"),
         QStringLiteral("00:23:F8:7E:12:BA"), infrastructure, megahertz, rate,
         QVariant::fromValue(strength), openToAll});
    const QString stored =
        ask(QStringLiteral("AddWiFiConnection"),
            {wireless, QStringLiteral("stored"), QStringLiteral("net"), QStringLiteral("none")})
            .toString();
    const auto connection = [&](const QString &through, const char *name) {
        return QDBusObjectPath(ask(QStringLiteral("AddActiveConnection"),
                                   {QStringList{through}, stored, QStringLiteral("/"),
                                    QString::fromLatin1(name), uint(2)})
                                   .toString());
    };
    m_wired = connection(ethernet, "wired");
    m_wiFi = connection(wireless, "wireless");
    const auto add = [&](const char *name, const QVariant &value) {
        ask(QStringLiteral("AddProperty"),
            {manager, QString::fromLatin1(name), QVariant::fromValue(QDBusVariant(value))});
    };
    add("PrimaryConnection", QVariant::fromValue(m_wiFi));
    add("PrimaryConnectionType", QStringLiteral("802-11-wireless"));
    add("Metered", meteredNo);
    setProperties({{QStringLiteral("State"), connectedGlobal}});
}

void TestNetworkPath::cleanupTestCase()
{
    m_manager.kill();
    m_manager.waitForFinished();
}

void TestNetworkPath::theFirstReportTellsThePathAsItIs()
{
    const Watch reports;
    QVERIFY(reports.all().empty());
    QTRY_VERIFY(reports.endWith(wiFi));
    QVERIFY(reports.isOnQueue());
}

void TestNetworkPath::aChangeOfTheConnectionIsReportedOnceOnTheQueue()
{
    const Watch reports;
    QTRY_VERIFY(reports.endWith(wiFi));

    connectThrough(m_wired, QStringLiteral("802-3-ethernet"));
    QTRY_VERIFY(reports.endWith(wired));
    connectThrough(m_wired, QStringLiteral("802-3-ethernet"));
    connectThrough(m_wiFi, QStringLiteral("802-11-wireless"));
    QTRY_VERIFY(reports.endWith(wiFi));
    QCOMPARE(reports.all(), (std::vector<NetworkPath>{wiFi, wired, wiFi}));
}

void TestNetworkPath::onlyANetworkWithAWayOutIsAPath_data()
{
    QTest::addColumn<uint>("state");
    QTest::addColumn<bool>("isSatisfied");
    QTest::newRow("no network at all") << disconnected << false;
    QTest::newRow("a network without a way out") << connectedLocal << false;
    QTest::newRow("behind a sign-in page") << connectedSite << true;
    QTest::newRow("the whole world") << connectedGlobal << true;
}

void TestNetworkPath::onlyANetworkWithAWayOutIsAPath()
{
    QFETCH(const uint, state);
    QFETCH(const bool, isSatisfied);
    setProperties({{QStringLiteral("State"), state}});
    const Watch reports;
    QTRY_VERIFY(!reports.all().empty() && reports.all().back().isSatisfied == isSatisfied);
    setProperties({{QStringLiteral("State"), connectedGlobal}});
    QTRY_VERIFY(reports.all().back().isSatisfied);
}

void TestNetworkPath::meteringIsReportedWhetherKnownOrGuessed()
{
    const Watch reports;
    QTRY_VERIFY(reports.endWith(wiFi));
    for (const uint kind : {meteredYes, meteredGuessYes}) {
        setProperties({{QStringLiteral("Metered"), kind}});
        QTRY_VERIFY(reports.endWith(meteredWiFi));
        setProperties({{QStringLiteral("Metered"), meteredNo}});
        QTRY_VERIFY(reports.endWith(wiFi));
    }
}

void TestNetworkPath::nothingIsReportedAfterCancel()
{
    Watch cancelled;
    const Watch watching;
    QTRY_VERIFY(watching.endWith(wiFi) && cancelled.endWith(wiFi));
    cancelled.monitor.cancel();
    connectThrough(m_wired, QStringLiteral("802-3-ethernet"));
    QTRY_VERIFY(watching.endWith(wired));
    cancelled.queue.sync([] {});
    QCOMPARE(cancelled.all(), std::vector<NetworkPath>{wiFi});
}

QTEST_GUILESS_MAIN(TestNetworkPath)
#include "tst_network_path.moc"
