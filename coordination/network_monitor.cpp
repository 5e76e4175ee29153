// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "coordination/network_monitor.h"

#include "platform/serial_queue.h"

#include <QThread>

#include <utility>

namespace veltro {

NetworkMonitor::NetworkMonitor(QObject *parent) : NetworkMonitor(nullptr, parent) {}

NetworkMonitor::NetworkMonitor(std::unique_ptr<Source> source, QObject *parent)
    : QObject(parent)
    , m_queue(std::make_unique<SerialQueue>("com.veltro.netmon"))
    , m_source(std::move(source))
{}

NetworkMonitor::~NetworkMonitor() = default;

void NetworkMonitor::replace(bool &stored, bool value, void (NetworkMonitor::*notify)())
{
    Q_ASSERT(QThread::currentThread() == thread());
    if (stored != value) {
        stored = value;
        Q_EMIT(this->*notify)();
    }
}

}
