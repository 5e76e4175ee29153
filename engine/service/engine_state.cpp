// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "engine/service/engine_state.h"

#include <utility>

namespace veltro {

bool EngineState::isBootstrapped() const
{
    const std::lock_guard guard(m_lock);
    return m_bootstrapped;
}

void EngineState::setBootstrapped(const PythonObject &module)
{
    const auto *const kept = new PythonObject(module);
    const std::lock_guard guard(m_lock);
    m_ytDlpModule = kept;
    m_bootstrapped = true;
}

std::optional<PythonObject> EngineState::ytDlpModule() const
{
    const std::lock_guard guard(m_lock);
    return m_ytDlpModule == nullptr ? std::nullopt : std::optional(*m_ytDlpModule);
}

void EngineState::beginRun(const QUuid &id)
{
    const std::lock_guard guard(m_lock);
    m_cancellationFlags.insert(id, false);
}

void EngineState::endRun(const QUuid &id)
{
    const std::lock_guard guard(m_lock);
    m_cancellationFlags.remove(id);
}

void EngineState::requestCancellation(const QUuid &id)
{
    const std::lock_guard guard(m_lock);
    if (const auto flag = m_cancellationFlags.find(id); flag != m_cancellationFlags.end()) {
        *flag = true;
    }
}

bool EngineState::isCancelled(const QUuid &id) const
{
    const std::lock_guard guard(m_lock);
    return m_cancellationFlags.value(id, false);
}

bool EngineState::hasRuns() const
{
    const std::lock_guard guard(m_lock);
    return !m_cancellationFlags.isEmpty();
}

}
