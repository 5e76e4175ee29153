// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once
#include "platform/ffmpeg/session_log.h"

#include <functional>
#include <thread>

namespace veltro::ffmpeg {

/// Gives the calling thread a name that debuggers and monitors show: at most 15 characters.
void nameThread(const char *name);

/// A thread of a run: named, in the plain locale, its log lines those of the run. It has the
/// priority of the thread that starts it. The destructor asks the work to end and waits for that.
class WorkerThread {
public:
    /// @param work must not throw.
    /// @param stop called from the destructor; work then ends soon. Must not throw.
    /// @throws std::system_error when there is no thread to be had.
    WorkerThread(const char *name, SessionLog &log, std::function<void()> work,
                 std::function<void()> stop);
    ~WorkerThread();
    WorkerThread(const WorkerThread &) = delete;
    WorkerThread &operator=(const WorkerThread &) = delete;

private:
    const std::function<void()> m_stop;
    std::thread m_thread;
};

}
