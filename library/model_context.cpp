// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "library/model_context.h"

#include "library/database.h"
#include "library/model_container.h"
#include "library/search_key.h"
#include "library/store_changes.h"
#include "library/store_schema.h"
#include "platform/log.h"
#include "platform/serial_queue.h"

#include <utility>

namespace veltro {
namespace {

constexpr auto saveItem = R"(
INSERT INTO DownloadItem (id, sourceURL, title, uploader, durationSeconds, thumbnailFileURL,
    localFileURL, formatLabel, fileSizeBytes, stateRaw, failureReason, createdAt, completedAt,
    cookieHost)
VALUES (?1, ?2, ?3, ?4, ?5, ?6, ?7, ?8, ?9, ?10, ?11, ?12, ?13, ?14)
ON CONFLICT (id) DO UPDATE SET sourceURL = ?2, title = ?3, uploader = ?4, durationSeconds = ?5,
    thumbnailFileURL = ?6, localFileURL = ?7, formatLabel = ?8, fileSizeBytes = ?9, stateRaw = ?10,
    failureReason = ?11, createdAt = ?12, completedAt = ?13, cookieHost = ?14
)";
constexpr auto saveJar = R"(
INSERT INTO CookieJar (host, fileURL, updatedAt) VALUES (?1, ?2, ?3)
ON CONFLICT (host) DO UPDATE SET fileURL = ?2, updatedAt = ?3
)";

}

/// Puts changes into the tables, within a transaction, and collects what to tell.
class ModelContext::Writer {
public:
    explicit Writer(Database &database)
        : m_saveItem(database.prepare(saveItem))
        , m_saveKey(database.prepare(saveSearchKey))
        , m_removeItem(database.prepare("DELETE FROM DownloadItem WHERE id = ?1"))
        , m_saveJar(database.prepare(saveJar))
        , m_removeJar(database.prepare("DELETE FROM CookieJar WHERE host = ?1"))
    {}

    void operator()(const DownloadItem &item)
    {
        bind(item);
        m_saveItem.run();
        m_saveKey.bind(1, item.id);
        m_saveKey.bind(2, m_folding.name());
        m_saveKey.bind(3, m_folding.key(item.title, item.uploader.value_or(QString())));
        m_saveKey.run();
        m_told.saved.push_back(item.id);
    }
    void operator()(const CookieJar &jar)
    {
        m_saveJar.bind(1, jar.host);
        m_saveJar.bind(2, jar.fileURL);
        m_saveJar.bind(3, jar.updatedAt);
        m_saveJar.run();
        m_told.changesCookieJars = true;
    }
    void operator()(const ItemRemoval &removal)
    {
        m_removeItem.bind(1, removal.id);
        m_removeItem.run();
        m_told.removed.push_back(removal.id);
    }
    void operator()(const JarRemoval &removal)
    {
        m_removeJar.bind(1, removal.host);
        m_removeJar.run();
        m_told.changesCookieJars = true;
    }

    [[nodiscard]] StoreChange told() { return std::move(m_told); }

private:
    void bind(const DownloadItem &item)
    {
        m_saveItem.bind(1, item.id);
        m_saveItem.bind(2, item.sourceURL);
        m_saveItem.bind(3, item.title);
        m_saveItem.bind(4, item.uploader);
        m_saveItem.bind(5, item.durationSeconds);
        m_saveItem.bind(6, item.thumbnailFileURL);
        m_saveItem.bind(7, item.localFileURL);
        m_saveItem.bind(8, item.formatLabel);
        m_saveItem.bind(9, item.fileSizeBytes);
        m_saveItem.bind(10, item.stateRaw);
        m_saveItem.bind(11, item.failureReason);
        m_saveItem.bind(12, item.createdAt);
        m_saveItem.bind(13, item.completedAt);
        m_saveItem.bind(14, item.cookieHost);
    }

    const SearchFolding m_folding = SearchFolding::ofUser();
    Statement m_saveItem;
    Statement m_saveKey;
    Statement m_removeItem;
    Statement m_saveJar;
    Statement m_removeJar;
    StoreChange m_told;
};

ModelContext::ModelContext(std::shared_ptr<ModelContainer> container)
    : m_container(std::move(container))
{
    Q_ASSERT(m_container);
}

void ModelContext::insert(const DownloadItem &item)
{
    m_changes.emplace_back(item);
}

void ModelContext::insert(const CookieJar &jar)
{
    m_changes.emplace_back(jar);
}

void ModelContext::removeItem(const QUuid &id)
{
    m_changes.emplace_back(ItemRemoval{id});
}

void ModelContext::removeJar(const QString &host)
{
    m_changes.emplace_back(JarRemoval{host});
}

bool ModelContext::save()
{
    return save(*m_container, std::exchange(m_changes, {}));
}

void ModelContext::saveInBackground()
{
    storeQueue().async([container = m_container, changes = std::exchange(m_changes, {})] {
        (void)save(*container, changes);
    });
}

bool ModelContext::save(ModelContainer &container, const std::vector<Change> &changes)
{
    if (changes.empty()) {
        return true;
    }
    try {
        container.write([&changes](Database &database) {
            Writer writer(database);
            for (const Change &change : changes) {
                std::visit(writer, change);
            }
            return writer.told();
        });
        return true;
    } catch (const StoreError &error) {
        logLine(LogTag::engine, error.what());
        return false;
    }
}

}
