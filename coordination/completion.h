// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once
#include <QtGlobal>

#include <coroutine>
#include <memory>
#include <utility>
#include <vector>

namespace veltro {

/// The end of a piece of work, which coroutines can wait for before it comes and after:
///
///     co_await completion->wait();
///
/// Whoever waits goes on in a later turn of the event loop, never inside finish() or wait(), so
/// that a chain of any length needs no more stack than one link. Shared; main thread only.
class Completion {
public:
    class Awaiter {
    public:
        explicit Awaiter(Completion &completion) : m_completion(&completion) {}
        [[nodiscard]] bool await_ready() const { return false; }
        void await_suspend(std::coroutine_handle<> waiting) const { m_completion->add(waiting); }
        void await_resume() const {}

    private:
        Completion *m_completion; // kept alive by whoever waits
    };

    /// One that has come already.
    [[nodiscard]] static std::shared_ptr<Completion> finished();

    [[nodiscard]] bool isFinished() const { return m_isFinished; }
    void finish();
    [[nodiscard]] Awaiter wait() { return Awaiter(*this); }

private:
    void add(std::coroutine_handle<> waiting);

    bool m_isFinished = false;
    std::vector<std::coroutine_handle<>> m_waiting;
};

/// Finishes a completion when the scope ends, on every path.
class FinishAtEnd {
public:
    explicit FinishAtEnd(std::shared_ptr<Completion> completion)
        : m_completion(std::move(completion))
    {}
    ~FinishAtEnd() { m_completion->finish(); }
    Q_DISABLE_COPY_MOVE(FinishAtEnd)

private:
    const std::shared_ptr<Completion> m_completion;
};

}
