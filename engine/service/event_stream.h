// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once
#include <QCoreApplication>
#include <QMetaObject>

#include <coroutine>
#include <cstddef>
#include <exception>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <utility>
#include <vector>

namespace veltro {

/// An unbounded stream of values from any thread to one coroutine of the main thread:
///
///     while (std::optional<Event> event = co_await stream.next()) { ... }
///
/// next() yields nothing once the stream has ended normally and throws the error that ended it.
/// Dropping the stream ends it too. Main thread only; the Producer may be used from any thread.
template <typename Event>
class EventStream {
    struct State;

public:
    /// The writing end. Copies write to the same stream; what comes after the end is dropped.
    class Producer {
    public:
        void yield(Event event) const;
        void finish() const { m_state->end(nullptr); }
        void fail(std::exception_ptr error) const { m_state->end(std::move(error)); }
        /// Called once, when the stream ends for whatever reason, on the thread that ends it;
        /// at once when it has ended already.
        void onTermination(std::function<void()> handler) const;

    private:
        friend class EventStream;
        explicit Producer(std::shared_ptr<State> state) : m_state(std::move(state)) {}
        std::shared_ptr<State> m_state;
    };

    /// What next() gives back to co_await.
    class Awaiter {
    public:
        explicit Awaiter(std::shared_ptr<State> state) : m_state(std::move(state)) {}
        ~Awaiter()
        {
            if (m_state) {
                m_state->forgetWaiting();
            }
        }
        Awaiter(Awaiter &&) noexcept = default;
        Awaiter &operator=(Awaiter &&) = delete;
        bool await_ready() const { return m_state->isReadable(); }
        bool await_suspend(std::coroutine_handle<> waiting) const { return m_state->wait(waiting); }
        std::optional<Event> await_resume() const { return m_state->take(); }

    private:
        std::shared_ptr<State> m_state;
    };

    EventStream() : m_state(std::make_shared<State>()) {}
    // A termination handler does not throw. NOLINTNEXTLINE(bugprone-exception-escape)
    ~EventStream()
    {
        if (m_state) {
            m_state->end(nullptr);
        }
    }
    EventStream(EventStream &&) noexcept = default;
    EventStream &operator=(EventStream &&) = delete;

    [[nodiscard]] Producer producer() const { return Producer(m_state); }
    [[nodiscard]] Awaiter next() { return Awaiter(m_state); }

private:
    struct State : std::enable_shared_from_this<State> {
        void end(std::exception_ptr reason);
        bool isReadable();
        bool wait(std::coroutine_handle<> handle);
        std::optional<Event> take();
        void forgetWaiting();
        /// REQUIRES: the lock is held. Resumes the reader by way of the main thread's event loop.
        void wakeReader();

        /// Makes the written events the reader's, once it has read those it had; what is left to
        /// read. REQUIRES: the lock is held.
        bool refill();

        std::mutex lock;
        // Guarded by lock.
        std::vector<Event> events;
        bool ended = false;
        std::exception_ptr error;
        std::function<void()> termination;
        std::coroutine_handle<> waiting;
        bool wakePosted = false;
        // The reader's alone, so that a burst of events costs it one turn of the lock.
        std::vector<Event> taken;
        std::size_t nextTaken = 0;
    };

    std::shared_ptr<State> m_state;
};

template <typename Event>
void EventStream<Event>::Producer::yield(Event event) const
{
    const std::lock_guard guard(m_state->lock);
    if (!m_state->ended) {
        m_state->events.push_back(std::move(event));
        m_state->wakeReader();
    }
}

template <typename Event>
void EventStream<Event>::Producer::onTermination(std::function<void()> handler) const
{
    {
        const std::lock_guard guard(m_state->lock);
        if (!m_state->ended) {
            m_state->termination = std::move(handler);
            return;
        }
    }
    handler();
}

template <typename Event>
void EventStream<Event>::State::end(std::exception_ptr reason)
{
    std::function<void()> handler;
    {
        const std::lock_guard guard(lock);
        if (ended) {
            return;
        }
        ended = true;
        error = std::move(reason);
        handler = std::exchange(termination, nullptr);
        wakeReader();
    }
    if (handler) {
        handler();
    }
}

template <typename Event>
bool EventStream<Event>::State::refill()
{
    if (nextTaken == taken.size()) {
        taken.clear();
        nextTaken = 0;
        taken.swap(events);
    }
    return !taken.empty();
}

template <typename Event>
bool EventStream<Event>::State::isReadable()
{
    if (nextTaken < taken.size()) {
        return true;
    }
    const std::lock_guard guard(lock);
    return refill() || ended;
}

template <typename Event>
bool EventStream<Event>::State::wait(std::coroutine_handle<> handle)
{
    const std::lock_guard guard(lock);
    if (ended || !events.empty()) {
        return false;
    }
    waiting = handle;
    return true;
}

template <typename Event>
std::optional<Event> EventStream<Event>::State::take()
{
    if (nextTaken == taken.size()) {
        const std::lock_guard guard(lock);
        if (!refill()) {
            if (error) {
                std::rethrow_exception(std::exchange(error, nullptr));
            }
            return std::nullopt;
        }
    }
    return std::optional<Event>(std::move(taken[nextTaken++]));
}

template <typename Event>
void EventStream<Event>::State::forgetWaiting()
{
    const std::lock_guard guard(lock);
    waiting = nullptr;
}

template <typename Event>
void EventStream<Event>::State::wakeReader()
{
    if (!waiting || wakePosted || QCoreApplication::instance() == nullptr) {
        return;
    }
    wakePosted = true;
    // The handle is looked up when the call arrives: by then the reader may be gone, or may have
    // read everything on its own and wait for something else.
    auto resume = [state = this->shared_from_this()] {
        std::coroutine_handle<> reader;
        {
            const std::lock_guard guard(state->lock);
            state->wakePosted = false;
            if (state->ended || !state->events.empty()) {
                reader = std::exchange(state->waiting, nullptr);
            }
        }
        if (reader) {
            reader.resume();
        }
    };
    QMetaObject::invokeMethod(QCoreApplication::instance(), std::move(resume),
                              Qt::QueuedConnection);
}

}
