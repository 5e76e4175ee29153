// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/network_path.h"

#include "platform/serial_queue.h"

#include <QMetaObject>
#include <QNetworkInformation>
#include <QObject>
#include <QTimer>

#include <chrono>
#include <optional>
#include <utility>

namespace veltro {
namespace {

// What a window takes to open.
constexpr std::chrono::milliseconds startTime(300);

NetworkPath pathOf(const QNetworkInformation &network)
{
    using Reach = QNetworkInformation::Reachability;
    const Reach reach = network.reachability();
    NetworkPath path;
    // A network without a way out is no path; one behind a sign-in page is.
    path.isSatisfied = reach != Reach::Disconnected && reach != Reach::Local;
    path.isExpensive = network.isMetered();
    path.usesWiFi = network.transportMedium() == QNetworkInformation::TransportMedium::WiFi;
    return path;
}

}

/// Lives while reports are wanted; its connections end with it.
class NetworkPathMonitor::Watch : public QObject {
public:
    Watch(SerialQueue &queue, std::function<void(NetworkPath)> handler)
        : m_queue(queue), m_handler(std::move(handler))
    {
        // Asking the system takes calls to other processes, which the first frame need not wait
        // for.
        QTimer::singleShot(startTime, this, [this] { begin(); });
    }

private:
    void begin()
    {
        using Feature = QNetworkInformation::Feature;
        if (!QNetworkInformation::loadBackendByFeatures(Feature::Reachability | Feature::Metered |
                                                        Feature::TransportMedium) &&
            !QNetworkInformation::loadDefaultBackend()) {
            return;
        }
        const QNetworkInformation *const network = QNetworkInformation::instance();
        const auto changed = [this] { scheduleReport(); };
        connect(network, &QNetworkInformation::reachabilityChanged, this, changed);
        connect(network, &QNetworkInformation::isMeteredChanged, this, changed);
        connect(network, &QNetworkInformation::transportMediumChanged, this, changed);
        report();
    }

    /// Several properties change together when a connection does; they make one report.
    void scheduleReport()
    {
        if (!std::exchange(m_isScheduled, true)) {
            QMetaObject::invokeMethod(
                this, [this] { report(); }, Qt::QueuedConnection);
        }
    }

    void report()
    {
        m_isScheduled = false;
        const NetworkPath path = pathOf(*QNetworkInformation::instance());
        if (m_last != path) {
            m_last = path;
            m_queue.async([handler = m_handler, path] { handler(path); });
        }
    }

    SerialQueue &m_queue;
    const std::function<void(NetworkPath)> m_handler;
    std::optional<NetworkPath> m_last;
    bool m_isScheduled = false;
};

NetworkPathMonitor::NetworkPathMonitor() = default;
NetworkPathMonitor::~NetworkPathMonitor() = default;

void NetworkPathMonitor::start(SerialQueue &queue, std::function<void(NetworkPath)> handler)
{
    Q_ASSERT(!m_watch);
    m_watch = std::make_unique<Watch>(queue, std::move(handler));
}

void NetworkPathMonitor::cancel()
{
    m_watch.reset();
}

}
