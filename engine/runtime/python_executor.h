// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once
#include "engine/bridge/python_error.h"
#include "engine/runtime/interpreter_scope.h"
#include "engine/runtime/task_cancelled.h"
#include "platform/serial_queue.h"

#include <exception>
#include <functional>
#include <optional>
#include <string>
#include <type_traits>
#include <utility>
#include <variant>

namespace veltro {

/// A serial queue for interpreter jobs, and the rule by which a job holds the interpreter lock:
/// as a whole, never for single calls inside it. Every operation may be called from any thread.
class PythonExecutor {
public:
    /// For the bootstrap and the download runs. Never destroyed, since a job may still run while
    /// the process leaves main().
    static PythonExecutor &primary();
    /// For probes; likewise.
    static PythonExecutor &probe();

    explicit PythonExecutor(std::string label);

    [[nodiscard]] SerialQueue &queue() { return m_queue; }

    /// Queues the body as an interpreter job and returns at once. What the body captured ends with
    /// the job. The body must not throw.
    void submit(std::function<void()> body);

    /// Sets the environment and starts the interpreter, once in the life of the process. The
    /// thread that starts it holds the interpreter lock until releaseStartupThreadState().
    /// @throws EnvironmentError; a later call then tries again.
    static void prepareEnvironment();

    /// Gives up the lock that the start of the interpreter left this thread holding: at once, or at
    /// the end of the job that calls, whose handles still need it until then. Does nothing on
    /// another thread, a second time, or in a job that took the lock itself.
    static void releaseStartupThreadState();

    /// Runs the body on this thread, with the interpreter lock when an interpreter runs, and hands
    /// back its value or throws its error. A PythonError that leaves keeps only its texts.
    template <typename Body>
    static std::invoke_result_t<Body> withGIL(Body &&body)
    {
        const InterpreterScope scope;
        try {
            return std::forward<Body>(body)();
        } catch (const PythonError &error) {
            if (scope.isOutermost()) {
                error.leaveJob();
            }
            throw;
        }
    }

    /// Runs the body by withGIL() and hands back its outcome; TaskCancelled when it never ran.
    template <typename Body>
    static std::invoke_result_t<Body> runThrowing(Body &&body);

private:
    SerialQueue m_queue;
};

template <typename Body>
std::invoke_result_t<Body> PythonExecutor::runThrowing(Body &&body)
{
    using Value = std::invoke_result_t<Body>;
    std::exception_ptr error = std::make_exception_ptr(TaskCancelled());
    std::optional<std::conditional_t<std::is_void_v<Value>, std::monostate, Value>> value;
    try {
        withGIL([&] {
            if constexpr (std::is_void_v<Value>) {
                std::forward<Body>(body)();
                value.emplace();
            } else {
                value.emplace(std::forward<Body>(body)());
            }
        });
    } catch (...) {
        error = std::current_exception();
    }
    if (!value) {
        std::rethrow_exception(error);
    }
    if constexpr (!std::is_void_v<Value>) {
        return *std::move(value);
    }
}

}
