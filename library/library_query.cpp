// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "library/library_query.h"

#include "library/database.h"
#include "library/model_container.h"
#include "library/store_schema.h"
#include "platform/log.h"
#include "platform/serial_queue.h"

#include <QHash>
#include <QSet>

#include <algorithm>
#include <utility>

namespace veltro {
namespace {

// The first page is what a screen shows at once; between the others other work has its turn.
constexpr std::size_t firstPage = 50;
constexpr std::size_t page = 5'000;
constexpr std::size_t renewedAtOnce = 400; // a search may wait for one commit of so many
// Beyond these a view is quicker when it begins anew. Another search text shows other rows anyhow.
constexpr std::size_t mostSearchChanges = 32;
constexpr std::size_t mostStoreChanges = 256;

std::string selection(std::string_view rest)
{
    return "SELECT " + std::string(LibraryRow::columns) + " FROM DownloadItem i " + searchKeyJoin +
           std::string(rest);
}

bool standsAbove(const std::shared_ptr<const LibraryRow> &a,
                 const std::shared_ptr<const LibraryRow> &b)
{
    return a->precedes(*b);
}

/// Puts a row where it belongs, in the stead of the one that has its place.
RowChange place(const std::shared_ptr<const LibraryRow> &row, LibraryRows &rows)
{
    const auto at = std::lower_bound(rows.begin(), rows.end(), row, standsAbove);
    const bool isThere = at != rows.end() && (*at)->hasPlaceOf(*row);
    RowChange change{isThere ? RowChange::Kind::replace : RowChange::Kind::insert,
                     static_cast<std::size_t>(at - rows.begin()),
                     1,
                     {row}};
    applyChange(change, rows);
    return change;
}

}

LibraryQuery::LibraryQuery(std::shared_ptr<ModelContainer> container, std::size_t limit,
                           Deliver deliver)
    : m_container(std::move(container)), m_limit(limit), m_deliver(std::move(deliver))
{}

LibraryQuery::~LibraryQuery() = default;

Statement LibraryQuery::newest(Database &database, const SearchFolding &folding, std::size_t limit)
{
    Statement statement =
        database.prepare(selection("ORDER BY i.completedAt DESC, i.rowid DESC LIMIT ?2"));
    statement.bind(1, folding.name());
    statement.bind(2, limit == 0 ? qint64{-1} : static_cast<qint64>(limit));
    return statement;
}

void LibraryQuery::enqueue(void (LibraryQuery::*step)())
{
    storeQueue().async([self = shared_from_this(), step] {
        if (!self->m_isStopped) {
            (self.get()->*step)();
        }
    });
}

void LibraryQuery::start()
{
    enqueue(&LibraryQuery::open);
}

void LibraryQuery::goOn()
{
    enqueue(&LibraryQuery::readMore);
}

void LibraryQuery::stop()
{
    m_isStopped = true;
    storeQueue().async([self = shared_from_this()] { self->m_subscription.reset(); });
}

void LibraryQuery::search(const QString &text, std::uint64_t number)
{
    m_latestSearch = number;
    storeQueue().async([self = shared_from_this(), text, number] {
        // While someone types, only the last text matters.
        if (!self->m_isStopped && self->m_latestSearch == number) {
            self->answer(self->m_folding.needle(text), number);
        }
    });
}

void LibraryQuery::open()
{
    // Heard of before anything is read, so that nothing is missed.
    m_subscription = StoreChanges::shared().subscribe(
        [weak = weak_from_this(), file = m_container->file()](const StoreChange &change) {
            if (change.file == file) {
                storeQueue().async([weak, change] {
                    if (const auto self = weak.lock(); self && !self->m_isStopped) {
                        self->take(change);
                    }
                });
            }
        });
    try {
        m_database = std::make_unique<Database>(m_container->openForReading());
        m_loading = std::make_unique<Statement>(newest(*m_database, m_folding, m_limit));
    } catch (const StoreError &error) {
        giveUp(error.what());
    }
    readMore();
}

void LibraryQuery::readMore()
{
    const std::size_t wanted = m_rows.empty() ? firstPage : page;
    LibraryRows rows;
    try {
        while (m_loading && !m_isStopped && rows.size() < wanted && m_loading->step()) {
            rows.push_back(readRow(*m_loading));
        }
    } catch (const StoreError &error) {
        giveUp(error.what());
    }
    m_isLoaded = rows.size() < wanted;
    m_rows.insert(m_rows.end(), rows.begin(), rows.end());
    LibraryRows shown = found(rows);
    LibraryUpdate update;
    if (!shown.empty()) {
        update.changes.push_back({RowChange::Kind::insert, m_shown.size(), shown.size(), shown});
        m_shown.insert(m_shown.end(), shown.begin(), shown.end());
    }
    update.hasMore = !m_isLoaded;
    deliver(std::move(update));
    if (m_isLoaded) {
        finishLoading();
    }
}

void LibraryQuery::finishLoading()
{
    m_loading.reset(); // and with it the state of the store that it has read
    for (const StoreChange &change : std::exchange(m_missed, {})) {
        take(change);
    }
    if (!m_keyless.empty()) {
        enqueue(&LibraryQuery::renewKeys);
    }
}

void LibraryQuery::take(const StoreChange &change)
{
    if (!m_database || (change.saved.empty() && change.removed.empty())) {
        return;
    }
    if (!m_isLoaded) {
        m_missed.push_back(change);
        return;
    }
    try {
        if (m_limit > 0) {
            reload();
        } else {
            readAgain(change);
        }
    } catch (const StoreError &error) {
        logLine(LogTag::engine, error.what());
    }
}

void LibraryQuery::readAgain(const StoreChange &change)
{
    QSet<QUuid> gone(change.removed.begin(), change.removed.end());
    QHash<QUuid, std::shared_ptr<const LibraryRow>> saved;
    Statement statement = m_database->prepare(selection("WHERE i.id = ?2"));
    for (const QUuid &id : change.saved) {
        statement.bind(1, m_folding.name());
        statement.bind(2, id);
        if (statement.step()) {
            saved.insert(id, readRow(statement));
        } else {
            gone.insert(id); // removed since, which will be heard of as well
        }
        statement.reset();
    }
    const bool isLarge = static_cast<std::size_t>(saved.size()) > mostStoreChanges;
    const auto leaves = [&](const std::shared_ptr<const LibraryRow> &row) {
        const auto other = saved.value(row->id());
        return gone.contains(row->id()) || (other && (isLarge || !other->hasPlaceOf(*row)));
    };
    if (std::any_of(m_rows.begin(), m_rows.end(), leaves)) {
        std::erase_if(m_rows, leaves);
        if (!isLarge) {
            show(found(m_rows), mostStoreChanges);
        }
    }
    if (isLarge) {
        m_rows.insert(m_rows.end(), saved.begin(), saved.end());
        std::sort(m_rows.begin(), m_rows.end(), standsAbove);
        show(found(m_rows), mostStoreChanges);
    } else if (!saved.isEmpty()) {
        placeAll(saved.values());
    }
}

void LibraryQuery::placeAll(const QList<std::shared_ptr<const LibraryRow>> &rows)
{
    LibraryUpdate update;
    for (const auto &row : rows) {
        (void)place(row, m_rows);
        if (finds(*row)) {
            update.changes.push_back(place(row, m_shown));
        }
    }
    deliver(std::move(update));
}

void LibraryQuery::reload()
{
    Statement statement = newest(*m_database, m_folding, m_limit);
    m_rows.clear();
    while (statement.step()) {
        m_rows.push_back(readRow(statement));
    }
    show(found(m_rows), mostStoreChanges);
}

void LibraryQuery::answer(const QByteArray &needle, std::uint64_t number)
{
    const bool narrows = !m_needle.isEmpty() && needle.contains(m_needle);
    m_needle = needle;
    m_search = number;
    // Whatever has the longer text has the shorter one.
    show(narrows ? found(m_shown) : found(m_rows), mostSearchChanges);
}

std::shared_ptr<const LibraryRow> LibraryQuery::readRow(const Statement &statement)
{
    auto row = std::make_shared<const LibraryRow>(statement);
    if (row->hasKey()) {
        return row;
    }
    const QByteArray key =
        m_folding.key(row->text(LibraryRow::Text::title), row->text(LibraryRow::Text::uploader));
    row = std::make_shared<const LibraryRow>(
        row->withKey({key.constData(), static_cast<std::size_t>(key.size())}));
    m_keyless.push_back(row);
    return row;
}

/// Keeps the keys that loading had to make, some at a time, so that the next start finds them.
/// Those that cannot be kept are made again then.
void LibraryQuery::renewKeys()
{
    const auto slice = static_cast<std::ptrdiff_t>(std::min(m_keyless.size(), renewedAtOnce));
    const LibraryRows rows(m_keyless.end() - slice, m_keyless.end());
    m_keyless.erase(m_keyless.end() - slice, m_keyless.end());
    try {
        m_container->write([this, &rows](Database &database) {
            writeKeys(database, rows);
            return StoreChange();
        });
    } catch (const StoreError &error) {
        logLine(LogTag::engine, error.what());
        m_keyless.clear();
    }
    if (!m_keyless.empty()) {
        enqueue(&LibraryQuery::renewKeys);
    }
}

void LibraryQuery::writeKeys(Database &database, const LibraryRows &rows) const
{
    Statement statement = database.prepare(saveSearchKey);
    for (const auto &row : rows) {
        const std::string_view key = row->key();
        statement.bind(1, row->id());
        statement.bind(2, m_folding.name());
        statement.bind(3, QByteArray(key.data(), static_cast<qsizetype>(key.size())));
        statement.run();
    }
}

bool LibraryQuery::finds(const LibraryRow &row) const
{
    return keyContains(row.key(),
                       {m_needle.constData(), static_cast<std::size_t>(m_needle.size())});
}

LibraryRows LibraryQuery::found(const LibraryRows &rows) const
{
    if (m_needle.isEmpty()) {
        return rows;
    }
    LibraryRows result;
    std::copy_if(rows.begin(), rows.end(), std::back_inserter(result),
                 [this](const auto &row) { return finds(*row); });
    return result;
}

void LibraryQuery::show(LibraryRows rows, std::size_t mostChanges)
{
    LibraryUpdate update;
    if (auto changes = rowChanges(m_shown, rows, mostChanges)) {
        update.changes = *std::move(changes);
    } else {
        update.all = rows;
    }
    m_shown = std::move(rows);
    deliver(std::move(update));
}

void LibraryQuery::deliver(LibraryUpdate update)
{
    update.total = m_rows.size();
    update.isLoaded = m_isLoaded;
    update.search = m_search;
    m_deliver(std::move(update));
}

/// What has been read stays; nothing more comes.
void LibraryQuery::giveUp(const char *reason)
{
    logLine(LogTag::engine, reason);
    m_loading.reset();
}

}
