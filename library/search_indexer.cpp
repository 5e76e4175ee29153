// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "library/search_indexer.h"

#include "library/database.h"
#include "library/download_item.h"
#include "library/library_row.h"
#include "library/model_container.h"
#include "platform/background_thread.h"
#include "platform/log.h"

#include <algorithm>
#include <chrono>
#include <condition_variable>
#include <mutex>
#include <string>
#include <utility>

namespace veltro {
namespace {

// What is in memory at once, and what the end of the process waits for.
constexpr std::size_t indexedAtOnce = 200;
// Even a thread that yields takes caches and memory from the one that draws.
constexpr int restInBackground = 4;

using Clock = std::chrono::steady_clock;

/// Ends early when a stop is asked for.
void pause(Clock::duration time, const std::stop_token &stop)
{
    std::mutex lock;
    std::condition_variable_any ended;
    std::unique_lock guard(lock);
    ended.wait_for(guard, stop, time, [] { return false; });
}

std::optional<QString> describedBy(const DownloadItem &item)
{
    if (item.uploader) {
        return item.uploader;
    }
    const QString host = item.sourceURL.host();
    return host.isEmpty() ? std::nullopt : std::optional(host);
}

/// The ids of the entries that the index lacks. Both sides come in the same order.
std::vector<std::string> missingIds(Database &library, const SearchIndex &index)
{
    std::vector<std::string> missing;
    Statement entry = library.prepare("SELECT id FROM DownloadItem ORDER BY id");
    bool hasEntry = entry.step();
    const auto missUntil = [&](const auto &isReached) {
        for (; hasEntry && !isReached(entry.text(0)); hasEntry = entry.step()) {
            missing.emplace_back(entry.text(0));
        }
    };
    const bool isRead = index.eachIdentifier([&](std::string_view identifier) {
        missUntil([&](std::string_view id) { return id >= identifier; });
        if (hasEntry && entry.text(0) == identifier) {
            hasEntry = entry.step();
        }
    });
    if (!isRead) {
        return {}; // nothing could be written to it either
    }
    missUntil([](std::string_view) { return false; });
    return missing;
}

std::vector<SearchableItem> readItems(Database &library, const std::string *first,
                                      const std::string *last)
{
    Statement entry = library.prepare("SELECT " + std::string(LibraryRow::columns) +
                                      " FROM DownloadItem i LEFT JOIN RowSearchKey k "
                                      "ON k.number = i.rowid WHERE i.id = ?1");
    std::vector<SearchableItem> items;
    for (; first != last; ++first) {
        entry.bind(1, std::string_view(*first));
        if (entry.step()) {
            items.push_back(searchableItem(LibraryRow(entry).item()));
        }
        entry.reset();
    }
    return items;
}

}

SearchableItem searchableItem(const DownloadItem &item)
{
    SearchableItem found;
    found.contentType = QStringLiteral("video/*");
    found.title = item.title;
    found.contentDescription = describedBy(item);
    found.durationSeconds = item.durationSeconds;
    found.contentURL = item.localFileURL;
    found.thumbnailURL = item.thumbnailFileURL;
    found.keywords = {QStringLiteral("video"), QStringLiteral("veltro")};
    if (item.uploader) {
        found.keywords += *item.uploader;
    }
    found.uniqueIdentifier = item.id.toString(QUuid::WithoutBraces);
    found.domainIdentifier = QStringLiteral("app.veltro.app.library");
    return found;
}

void indexForSearch(const DownloadItem &item)
{
    SearchIndex::standard().indexItems({searchableItem(item)});
}

void indexWhatIsMissing(ModelContainer &library, SearchIndex &index, const std::stop_token &stop,
                        int rest)
{
    try {
        Database database = library.openForReading();
        const std::vector<std::string> ids = missingIds(database, index);
        for (std::size_t done = 0; done < ids.size() && !stop.stop_requested();) {
            const auto begun = Clock::now();
            const std::size_t end = std::min(ids.size(), done + indexedAtOnce);
            index.indexItems(readItems(database, ids.data() + done, ids.data() + end));
            index.finish();
            done = end;
            if (done < ids.size()) {
                pause(rest * (Clock::now() - begun), stop);
            }
        }
    } catch (const StoreError &error) {
        logLine(LogTag::engine, error.what());
    }
}

std::jthread indexWhatIsMissingInBackground(std::shared_ptr<ModelContainer> library)
{
    return std::jthread([library = std::move(library)](const std::stop_token &stop) {
        giveWayToOthers();
        indexWhatIsMissing(*library, SearchIndex::standard(), stop, restInBackground);
    });
}

}
