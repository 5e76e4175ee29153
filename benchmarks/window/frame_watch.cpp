// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "benchmarks/window/frame_watch.h"

#include <QEvent>
#include <QQuickWindow>

#include <pthread.h>

namespace veltro::bench {

FrameWatch::FrameWatch(QQuickWindow &window)
{
    pthread_getcpuclockid(pthread_self(), &m_mainClock);
    window.installEventFilter(this);
    connect(
        &window, &QQuickWindow::afterSynchronizing, this, [this] { m_drawn = m_arrived; },
        Qt::DirectConnection);
    connect(&window, &QQuickWindow::frameSwapped, this, &FrameWatch::takeFrame,
            Qt::DirectConnection);
}

void FrameWatch::begin()
{
    const std::scoped_lock guard(m_lock);
    m_inputs.clear();
    m_figures = {};
    m_arrived = 0;
    m_drawn = 0;
    m_workedBefore = mainThreadSeconds();
}

FrameFigures FrameWatch::end()
{
    const std::scoped_lock guard(m_lock);
    return std::exchange(m_figures, {});
}

void FrameWatch::noteInput()
{
    const std::scoped_lock guard(m_lock);
    m_inputs.push_back(Clock::now());
}

bool FrameWatch::isAnswered() const
{
    const std::scoped_lock guard(m_lock);
    return m_figures.inputToFrame.size() == m_inputs.size();
}

bool FrameWatch::eventFilter(QObject *, QEvent *event)
{
    if (event->type() == QEvent::Wheel || event->type() == QEvent::KeyPress) {
        ++m_arrived;
    }
    return false;
}

void FrameWatch::takeFrame()
{
    const Clock::time_point now = Clock::now();
    const double worked = mainThreadSeconds();
    ++m_frames;
    const std::scoped_lock guard(m_lock);
    m_figures.mainThread.push_back(worked - std::exchange(m_workedBefore, worked));
    const std::size_t drawn = std::min(m_drawn, m_inputs.size());
    while (m_figures.inputToFrame.size() < drawn) {
        const Clock::time_point input = m_inputs[m_figures.inputToFrame.size()];
        m_figures.inputToFrame.push_back(std::chrono::duration<double>(now - input).count());
    }
}

double FrameWatch::mainThreadSeconds() const
{
    timespec time{};
    clock_gettime(m_mainClock, &time);
    return double(time.tv_sec) + double(time.tv_nsec) / 1e9;
}

}
