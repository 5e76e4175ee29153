// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once
#include <functional>
#include <memory>

namespace veltro {

class SerialQueue;

/// The way to the network as it is at one moment.
struct NetworkPath {
    bool isSatisfied = true;  ///< there is a route out of the machine
    bool isExpensive = false; ///< the connection is metered
    bool usesWiFi = false;

    bool operator==(const NetworkPath &) const = default;
};

/// Watches the machine's way to the network. Where the system says nothing of it, no report comes.
/// Main thread only; the handler runs on the queue.
class NetworkPathMonitor {
public:
    NetworkPathMonitor();
    ~NetworkPathMonitor();
    NetworkPathMonitor(const NetworkPathMonitor &) = delete;
    NetworkPathMonitor &operator=(const NetworkPathMonitor &) = delete;

    /// Reports the path as soon as the event loop runs, and then each change. The queue outlives
    /// this. REQUIRES: an application object; not started before.
    void start(SerialQueue &queue, std::function<void(NetworkPath)> handler);
    /// No report is queued any more; one that is queued may still come.
    void cancel();

private:
    class Watch;
    std::unique_ptr<Watch> m_watch;
};

}
