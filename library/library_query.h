// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once
#include "library/row_changes.h"
#include "library/search_key.h"
#include "library/store_changes.h"

#include <QList>

#include <atomic>
#include <functional>
#include <memory>
#include <optional>

namespace veltro {

class Database;
class ModelContainer;
class Statement;

/// What has happened to the rows that a live query yields: either all of them are given anew, or
/// the steps to them.
struct LibraryUpdate {
    std::optional<LibraryRows> all;
    std::vector<RowChange> changes;
    std::size_t total = 0;    ///< rows that are loaded, found or not
    bool isLoaded = false;    ///< whether these are all
    bool hasMore = false;     ///< whether goOn() brings more
    std::uint64_t search = 0; ///< the number of the search that is answered
};

/// A live query of the items, the newest first: loads them piece by piece, follows what any
/// container writes, and looks through them. Lives on the store's queue, to which its operations
/// hand over from any thread; updates are delivered there, in order.
class LibraryQuery : public std::enable_shared_from_this<LibraryQuery> {
public:
    using Deliver = std::function<void(LibraryUpdate)>;

    /// @param limit how many of the newest items there are for this query; 0 for all.
    LibraryQuery(std::shared_ptr<ModelContainer> container, std::size_t limit, Deliver deliver);
    ~LibraryQuery();

    /// The items in the order of the query, with their keys of that folding, for LibraryRow; of the
    /// newest so many, or of all for 0. @throws StoreError
    [[nodiscard]] static Statement newest(Database &database, const SearchFolding &folding,
                                          std::size_t limit);

    void start();
    /// Reads the next rows. Called once an update that has more has been shown, so that the first
    /// rows are on the screen before the rest competes for the processor.
    void goOn();
    /// Looks for another text. Numbers rise; one that another has followed may stay unanswered.
    void search(const QString &text, std::uint64_t number);
    /// Ends what goes on. An update may still be under way.
    void stop();

private:
    void enqueue(void (LibraryQuery::*step)());
    void open();
    void readMore();
    void finishLoading();
    void take(const StoreChange &change);
    void readAgain(const StoreChange &change);
    void reload();
    void placeAll(const QList<std::shared_ptr<const LibraryRow>> &rows);
    void answer(const QByteArray &needle, std::uint64_t number);
    void renewKeys();
    void writeKeys(Database &database, const LibraryRows &rows) const;

    [[nodiscard]] std::shared_ptr<const LibraryRow> readRow(const Statement &statement);
    [[nodiscard]] bool finds(const LibraryRow &row) const;
    [[nodiscard]] LibraryRows found(const LibraryRows &rows) const;
    void show(LibraryRows rows, std::size_t mostChanges);
    void deliver(LibraryUpdate update);
    void giveUp(const char *reason);

    // Constant after construction.
    const std::shared_ptr<ModelContainer> m_container;
    const std::size_t m_limit;
    const Deliver m_deliver;
    const SearchFolding m_folding = SearchFolding::ofUser();
    // Any thread.
    std::atomic<bool> m_isStopped = false;
    std::atomic<std::uint64_t> m_latestSearch = 0;
    // The store's queue alone.
    StoreChanges::Subscription m_subscription;
    std::unique_ptr<Database> m_database;
    std::unique_ptr<Statement> m_loading; // while there is more to read
    bool m_isLoaded = false;
    std::vector<StoreChange> m_missed; // while loading, which reads an older state
    LibraryRows m_rows;                // all, the newest first
    LibraryRows m_shown;               // those of them that are found
    LibraryRows m_keyless;             // those whose keys were made for another language
    QByteArray m_needle;
    std::uint64_t m_search = 0; // the number of m_needle
};

}
