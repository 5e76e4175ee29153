// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "engine/runtime/python_executor.h"

#include "engine/bridge/python_interface.h"
#include "engine/bridge/python_lock.h"
#include "engine/runtime/environment.h"
#include "engine/runtime/startup_thread.h"

#include <csignal>
#include <mutex>

namespace veltro {
namespace {

std::mutex environmentLock;
bool environmentPrepared = false; // guarded by environmentLock

/// A peer that closes its connection must end in an error of the write. The interpreter leaves
/// that to an ignored SIGPIPE, which is not its to decide for the whole process; blocked on the
/// threads that run its jobs, the signal harms nobody.
void blockBrokenPipeSignal()
{
    sigset_t signals;
    sigemptyset(&signals);
    sigaddset(&signals, SIGPIPE);
    pthread_sigmask(SIG_BLOCK, &signals, nullptr);
}

}

PythonExecutor &PythonExecutor::primary()
{
    static auto &executor = *new PythonExecutor("com.veltro.python.primary");
    return executor;
}

PythonExecutor &PythonExecutor::probe()
{
    static auto &executor = *new PythonExecutor("com.veltro.python.probe");
    return executor;
}

PythonExecutor::PythonExecutor(std::string label) : m_queue(std::move(label))
{
    m_queue.async(blockBrokenPipeSignal);
}

void PythonExecutor::submit(std::function<void()> body)
{
    m_queue.async([body = std::move(body)]() mutable {
        withGIL([&body] {
            const std::function<void()> job = std::move(body);
            job();
        });
    });
}

void PythonExecutor::prepareEnvironment()
{
    const std::lock_guard guard(environmentLock);
    if (environmentPrepared) {
        return;
    }
    setInterpreterEnvironment();
    const bool starting = !python_lock::interpreterRuns();
    const PythonInterface &python = Python();
    if (starting) {
        setStartupThread();
    }
    static_cast<void>(python.version());
    environmentPrepared = true;
}

void PythonExecutor::releaseStartupThreadState()
{
    releaseStartupThread();
}

}
