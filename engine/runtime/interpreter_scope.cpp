// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "engine/runtime/interpreter_scope.h"

#include "engine/bridge/python_lock.h"
#include "engine/runtime/startup_thread.h"

#include <atomic>
#include <thread>

namespace veltro {
namespace {

/// The jobs that enclose each other on this thread.
thread_local int openScopes = 0;

/// The thread that started the interpreter and still holds its lock for that.
std::atomic<std::thread::id> startupThread;

}

InterpreterScope::InterpreterScope()
    : m_locked(python_lock::interpreterRuns()), m_state(m_locked ? python_lock::ensure() : 0)
{
    ++openScopes;
}

InterpreterScope::~InterpreterScope()
{
    --openScopes;
    if (m_locked) {
        python_lock::release(m_state);
    }
    releaseStartupThread();
}

bool InterpreterScope::isOutermost() const
{
    return openScopes == 1;
}

void setStartupThread()
{
    startupThread = std::this_thread::get_id();
}

void releaseStartupThread()
{
    if (openScopes > 0 || startupThread.load() != std::this_thread::get_id()) {
        return;
    }
    startupThread = std::thread::id();
    python_lock::saveThread();
}

}
