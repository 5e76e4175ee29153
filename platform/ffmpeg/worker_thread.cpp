// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/ffmpeg/worker_thread.h"

#include "platform/ffmpeg/locale_scope.h"

#include <pthread.h>
#include <utility>

namespace veltro::ffmpeg {

void nameThread(const char *name)
{
    pthread_setname_np(pthread_self(), name);
}

WorkerThread::WorkerThread(const char *name, SessionLog &log, std::function<void()> work,
                           std::function<void()> stop)
    : m_stop(std::move(stop)), m_thread([name, &log, work = std::move(work)] {
        nameThread(name);
        const LocaleScope locale;
        const SessionLog::Scope scope(log);
        work();
    })
{}

WorkerThread::~WorkerThread()
{
    m_stop();
    m_thread.join();
}

}
