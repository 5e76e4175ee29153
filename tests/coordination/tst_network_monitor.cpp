// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "coordination/network_monitor.h"
#include "platform/network_path.h"
#include "platform/serial_queue.h"

#include <QSignalSpy>
#include <QTest>
#include <QThread>

using namespace veltro;

namespace {

/// What a source was asked, and a way to report as the system does: on the queue.
struct Reports {
    SerialQueue *queue = nullptr;
    NetworkMonitor::Source::Handler handler;
    bool isCancelled = false;

    /// Returns once the queue has handed the paths over; they arrive in the next turn.
    void send(const std::vector<NetworkPath> &paths) const
    {
        queue->sync([this, &paths] {
            for (const NetworkPath &path : paths) {
                handler(path);
            }
        });
    }
};

class FakeSource final : public NetworkMonitor::Source {
public:
    explicit FakeSource(std::shared_ptr<Reports> reports) : m_reports(std::move(reports)) {}
    void start(SerialQueue &queue, Handler handler) override
    {
        m_reports->queue = &queue;
        m_reports->handler = std::move(handler);
    }
    void cancel() override { m_reports->isCancelled = true; }

private:
    const std::shared_ptr<Reports> m_reports;
};

constexpr NetworkPath offline{false, false, false};
constexpr NetworkPath wired{true, false, false};
constexpr NetworkPath phone{true, true, true};

}

class TestNetworkMonitor : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void theBestIsTakenForGrantedUntilTheFirstReport();
    void aReportTellsOnlyWhatChanged();
    void aReportInFlightOutlivesTheMonitor();

private:
    std::unique_ptr<NetworkMonitor> makeMonitor()
    {
        m_reports = std::make_shared<Reports>();
        return std::make_unique<NetworkMonitor>(std::make_unique<FakeSource>(m_reports));
    }
    std::shared_ptr<Reports> m_reports;
};

void TestNetworkMonitor::theBestIsTakenForGrantedUntilTheFirstReport()
{
    const auto monitor = makeMonitor();
    QCOMPARE(m_reports->queue->label(), std::string("com.veltro.netmon"));
    QVERIFY(monitor->isOnline() && monitor->isWiFi() && !monitor->isExpensive());
    m_reports->send({offline});
    QVERIFY(monitor->isOnline()); // nothing changes behind the main thread's back
    QTRY_VERIFY(!monitor->isOnline());
    QVERIFY(!monitor->isWiFi());
}

void TestNetworkMonitor::aReportTellsOnlyWhatChanged()
{
    const auto monitor = makeMonitor();
    QStringList told;
    auto note = [&told](const QString &name) {
        Q_ASSERT(QThread::currentThread() == qApp->thread());
        told.append(name);
    };
    connect(monitor.get(), &NetworkMonitor::isOnlineChanged, this,
            [&note] { note(QStringLiteral("online")); });
    connect(monitor.get(), &NetworkMonitor::isExpensiveChanged, this,
            [&note] { note(QStringLiteral("expensive")); });
    connect(monitor.get(), &NetworkMonitor::isWiFiChanged, this,
            [&note] { note(QStringLiteral("wifi")); });

    m_reports->send({wired, wired});
    QTRY_VERIFY(!monitor->isWiFi());
    QVERIFY(monitor->isOnline());
    m_reports->send({wired, phone});
    QTRY_VERIFY(monitor->isExpensive());
    m_reports->send({phone, offline});
    QTRY_VERIFY(!monitor->isOnline());
    QCOMPARE(told, (QStringList{QStringLiteral("wifi"), QStringLiteral("expensive"),
                                QStringLiteral("wifi"), QStringLiteral("online"),
                                QStringLiteral("expensive"), QStringLiteral("wifi")}));
}

void TestNetworkMonitor::aReportInFlightOutlivesTheMonitor()
{
    auto monitor = makeMonitor();
    m_reports->send({offline});
    monitor.reset();
    QVERIFY(m_reports->isCancelled);
    QCoreApplication::processEvents();
}

QTEST_GUILESS_MAIN(TestNetworkMonitor)
#include "tst_network_monitor.moc"
