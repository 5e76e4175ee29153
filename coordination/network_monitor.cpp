// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "coordination/network_monitor.h"

#include "platform/network_path.h"
#include "platform/serial_queue.h"

#include <QCoreApplication>
#include <QPointer>
#include <QThread>

#include <utility>

namespace veltro {

namespace {

/// The system's own reports.
class SystemPaths final : public NetworkMonitor::Source {
public:
    void start(SerialQueue &queue, Handler handler) override
    {
        m_monitor.start(queue, std::move(handler));
    }
    void cancel() override { m_monitor.cancel(); }

private:
    NetworkPathMonitor m_monitor;
};

}

NetworkMonitor::NetworkMonitor(QObject *parent)
    : NetworkMonitor(std::make_unique<SystemPaths>(), parent)
{}

NetworkMonitor::NetworkMonitor(std::unique_ptr<Source> source, QObject *parent)
    : QObject(parent)
    , m_queue(std::make_unique<SerialQueue>("com.veltro.netmon"))
    , m_source(std::move(source))
{
    // A QPointer must not be looked into on the queue: it is only carried across.
    m_source->start(*m_queue, [self = QPointer<NetworkMonitor>(this)](const NetworkPath &path) {
        const auto hand = [self, path] {
            if (self) {
                self->take(path);
            }
        };
        QMetaObject::invokeMethod(QCoreApplication::instance(), hand, Qt::QueuedConnection);
    });
}

NetworkMonitor::~NetworkMonitor()
{
    m_source->cancel();
}

void NetworkMonitor::take(const NetworkPath &path)
{
    replace(m_isOnline, path.isSatisfied, &NetworkMonitor::isOnlineChanged);
    replace(m_isExpensive, path.isExpensive, &NetworkMonitor::isExpensiveChanged);
    replace(m_isWiFi, path.usesWiFi, &NetworkMonitor::isWiFiChanged);
}

void NetworkMonitor::replace(bool &stored, bool value, void (NetworkMonitor::*notify)())
{
    Q_ASSERT(QThread::currentThread() == thread());
    if (stored != value) {
        stored = value;
        Q_EMIT(this->*notify)();
    }
}

}
