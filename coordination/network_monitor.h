// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once
#include <QObject>

#include <functional>
#include <memory>

namespace veltro {

class SerialQueue;
struct NetworkPath;

/// The machine's way to the network, for the screens. Takes the best for granted until the first
/// report. Main thread only; reports arrive on the queue "com.veltro.netmon" and are handed over.
class NetworkMonitor : public QObject {
    Q_OBJECT
    Q_PROPERTY(bool isOnline READ isOnline NOTIFY isOnlineChanged)
    Q_PROPERTY(bool isExpensive READ isExpensive NOTIFY isExpensiveChanged)
    Q_PROPERTY(bool isWiFi READ isWiFi NOTIFY isWiFiChanged)
public:
    /// What reports the paths. Between start() and the end of cancel() the handler may be called,
    /// on the queue.
    class Source {
    public:
        using Handler = std::function<void(NetworkPath)>;
        virtual ~Source() = default;
        virtual void start(SerialQueue &queue, Handler handler) = 0;
        virtual void cancel() = 0;
    };

    /// Watches the system's path, from now on until destruction.
    explicit NetworkMonitor(QObject *parent = nullptr);
    explicit NetworkMonitor(std::unique_ptr<Source> source, QObject *parent = nullptr);
    ~NetworkMonitor() override;

    [[nodiscard]] bool isOnline() const { return m_isOnline; }
    [[nodiscard]] bool isExpensive() const { return m_isExpensive; }
    [[nodiscard]] bool isWiFi() const { return m_isWiFi; }

Q_SIGNALS:
    void isOnlineChanged();
    void isExpensiveChanged();
    void isWiFiChanged();

private:
    void take(const NetworkPath &path);
    void replace(bool &stored, bool value, void (NetworkMonitor::*notify)());

    bool m_isOnline = true;
    bool m_isExpensive = false;
    bool m_isWiFi = true;
    std::unique_ptr<SerialQueue> m_queue;
    std::unique_ptr<Source> m_source; // ends before the queue that it reports on
};

}
