// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once
#include <condition_variable>
#include <deque>
#include <functional>
#include <future>
#include <mutex>
#include <string>
#include <thread>
#include <type_traits>
#include <utility>

namespace veltro {

/// One worker thread that runs what it is given, in order, one piece at a time.
/// Every operation may be called from any thread.
class SerialQueue {
public:
    enum class Priority {
        usual,
        background, ///< yields to whatever else wants the processor
    };

    /// The label names the queue; its last 15 bytes name the thread.
    explicit SerialQueue(std::string label, Priority priority = Priority::usual);
    /// Runs what is still queued, then ends the thread.
    ~SerialQueue();
    SerialQueue(const SerialQueue &) = delete;
    SerialQueue &operator=(const SerialQueue &) = delete;

    [[nodiscard]] const std::string &label() const { return m_label; }
    [[nodiscard]] bool isCurrent() const;

    /// Queues the work and returns at once. Work must not throw.
    void async(std::function<void()> work);

    /// Queues the work, waits for it, and hands back its value or throws its error.
    /// REQUIRES: not called from this queue's own thread.
    template <typename Work>
    std::invoke_result_t<Work> sync(Work &&work)
    {
        std::packaged_task<std::invoke_result_t<Work>()> task(std::forward<Work>(work));
        auto result = task.get_future();
        async([&task] { task(); });
        return result.get();
    }

private:
    void run();

    const std::string m_label;
    const Priority m_priority;
    std::mutex m_lock;
    std::condition_variable m_wake;
    std::deque<std::function<void()>> m_work; // guarded by m_lock
    bool m_ending = false;                    // guarded by m_lock
    std::thread m_thread;                     // last: it starts with everything above in place
};

}
