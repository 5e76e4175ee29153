// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once
#include "library/cookie_jar.h"
#include "library/download_item.h"

#include <memory>
#include <variant>
#include <vector>

namespace veltro {

class ModelContainer;

/// Changes to the store, collected until they are saved together. A record takes the place of the
/// one with its id or host. Used by one thread at a time.
class ModelContext {
public:
    explicit ModelContext(std::shared_ptr<ModelContainer> container);

    void insert(const DownloadItem &item);
    void insert(const CookieJar &jar);
    void removeItem(const QUuid &id);
    void removeJar(const QString &host);

    /// Whether the changes are on the disk now; when not, the log says why and they are dropped.
    /// Blocks for as long as the disk does.
    bool save();

    /// Saves on the store's queue, for the main thread; live queries then show it.
    void saveInBackground();

private:
    struct ItemRemoval {
        QUuid id;
    };
    struct JarRemoval {
        QString host;
    };
    using Change = std::variant<DownloadItem, CookieJar, ItemRemoval, JarRemoval>;
    class Writer;

    static bool save(ModelContainer &container, const std::vector<Change> &changes);

    const std::shared_ptr<ModelContainer> m_container; // never null
    std::vector<Change> m_changes;
};

}
