// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once
#include <condition_variable>
#include <deque>
#include <mutex>
#include <optional>
#include <utility>

namespace veltro::ffmpeg {

/// Hands values from one thread to another, in order. It has no limit of its own: whoever puts the
/// values in bounds how many are on their way.
template <typename Value>
class HandOver {
public:
    void put(Value value)
    {
        {
            const std::lock_guard guard(m_lock);
            m_values.push_back(std::move(value));
        }
        m_changed.notify_one();
    }

    /// No more values come; what is in it can still be taken.
    void close()
    {
        {
            const std::lock_guard guard(m_lock);
            m_isClosed = true;
        }
        m_changed.notify_all();
    }

    /// Waits for a value. @returns nothing when it is closed and empty.
    [[nodiscard]] std::optional<Value> take()
    {
        std::unique_lock guard(m_lock);
        m_changed.wait(guard, [this] { return m_isClosed || !m_values.empty(); });
        if (m_values.empty()) {
            return std::nullopt;
        }
        std::optional<Value> value(std::move(m_values.front()));
        m_values.pop_front();
        return value;
    }

private:
    std::mutex m_lock;
    std::condition_variable m_changed;
    std::deque<Value> m_values; // guarded by m_lock
    bool m_isClosed = false;    // guarded by m_lock
};

}
