// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once
#include <QString>
#include <QUuid>

#include <functional>
#include <memory>
#include <vector>

namespace veltro {

/// What a commit has changed in a store.
struct StoreChange {
    QString file;               ///< of the store
    std::vector<QUuid> saved;   ///< items that are new or have new values
    std::vector<QUuid> removed; ///< items
    bool changesCookieJars = false;
};

/// Tells everyone in the process what any container has written. Any thread.
class StoreChanges {
public:
    /// Called on the thread that has committed, one call at a time. It hands the change on and
    /// returns; it must not subscribe, nor end a subscription.
    using Handler = std::function<void(const StoreChange &)>;
    /// Ends with its last copy; the handler is not called after that.
    using Subscription = std::shared_ptr<const Handler>;

    static StoreChanges &shared();

    [[nodiscard]] Subscription subscribe(Handler handler);
    void post(const StoreChange &change);

private:
    struct State;

    StoreChanges();

    const std::shared_ptr<State> m_state;
};

}
