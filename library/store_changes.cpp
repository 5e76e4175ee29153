// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "library/store_changes.h"

#include <algorithm>
#include <mutex>

namespace veltro {

struct StoreChanges::State {
    std::mutex lock;
    std::vector<const Handler *> handlers; // guarded by lock; each belongs to its subscription
};

StoreChanges::StoreChanges() : m_state(std::make_shared<State>()) {}

StoreChanges &StoreChanges::shared()
{
    // Never destroyed: what is still queued at the end of the process may commit.
    static auto &changes = *new StoreChanges();
    return changes;
}

StoreChanges::Subscription StoreChanges::subscribe(Handler handler)
{
    auto own = std::make_unique<const Handler>(std::move(handler));
    const std::lock_guard guard(m_state->lock);
    m_state->handlers.push_back(own.get());
    return {own.release(), [state = m_state](const Handler *ended) {
                {
                    const std::lock_guard endingGuard(state->lock);
                    std::erase(state->handlers, ended);
                }
                delete ended;
            }};
}

void StoreChanges::post(const StoreChange &change)
{
    const std::lock_guard guard(m_state->lock);
    for (const Handler *const handler : m_state->handlers) {
        (*handler)(change);
    }
}

}
