// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "coordination/completion.h"

#include <QCoreApplication>
#include <QMetaObject>

namespace veltro {
namespace {

void resumeLater(std::coroutine_handle<> waiting)
{
    QMetaObject::invokeMethod(
        QCoreApplication::instance(), [waiting] { waiting.resume(); }, Qt::QueuedConnection);
}

}

std::shared_ptr<Completion> Completion::finished()
{
    auto completion = std::make_shared<Completion>();
    completion->finish();
    return completion;
}

void Completion::finish()
{
    m_isFinished = true;
    for (const std::coroutine_handle<> waiting : std::exchange(m_waiting, {})) {
        resumeLater(waiting);
    }
}

void Completion::add(std::coroutine_handle<> waiting)
{
    if (m_isFinished) {
        resumeLater(waiting);
    } else {
        m_waiting.push_back(waiting);
    }
}

}
