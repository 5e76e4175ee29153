// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/serial_queue.h"

#include "platform/background_thread.h"

#include <cstddef>
#include <pthread.h>

namespace veltro {

SerialQueue::SerialQueue(std::string label, Priority priority)
    : m_label(std::move(label)), m_priority(priority), m_thread([this] { run(); })
{}

SerialQueue::~SerialQueue()
{
    {
        const std::lock_guard guard(m_lock);
        m_ending = true;
    }
    m_wake.notify_one();
    m_thread.join();
}

bool SerialQueue::isCurrent() const
{
    return std::this_thread::get_id() == m_thread.get_id();
}

void SerialQueue::async(std::function<void()> work)
{
    {
        const std::lock_guard guard(m_lock);
        m_work.push_back(std::move(work));
    }
    m_wake.notify_one();
}

void SerialQueue::run()
{
    // The kernel keeps 15 bytes of a thread's name; the tail of a label tells most.
    constexpr std::size_t longest = 15;
    const std::size_t skipped = m_label.size() > longest ? m_label.size() - longest : 0;
    pthread_setname_np(pthread_self(), m_label.c_str() + skipped);
    if (m_priority == Priority::background) {
        giveWayToOthers();
    }
    for (;;) {
        std::unique_lock guard(m_lock);
        m_wake.wait(guard, [this] { return m_ending || !m_work.empty(); });
        if (m_work.empty()) {
            return;
        }
        const std::function<void()> work = std::move(m_work.front());
        m_work.pop_front();
        guard.unlock();
        work();
    }
}

}
