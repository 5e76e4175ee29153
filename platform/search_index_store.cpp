// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/search_index_store.h"

#include "platform/log.h"

#include <sqlite3.h>

#include <QDateTime>
#include <QFile>

#include <utility>

namespace veltro {
namespace {

// Raised when the tables change; a file of a later version is left alone.
constexpr int searchIndexVersion = 1;
constexpr int searchBusyMilliseconds = 5'000;
// To rank a match takes some microseconds, and a letter may match everything: the newest are
// ranked.
constexpr qint64 mostRanked = 5'000;
constexpr QChar keywordSeparator(0x1F);

// The words are folded before they come here, so the tokenizer only cuts: at everything but
// letters, digits and the marks of scripts that write vowels as marks.
constexpr const char *searchIndexTables = R"sql(
CREATE TABLE items (
    row INTEGER PRIMARY KEY,
    identifier TEXT NOT NULL UNIQUE,
    domain TEXT NOT NULL,
    content_type TEXT NOT NULL,
    title TEXT NOT NULL,
    description TEXT,
    duration REAL,
    content_url TEXT,
    thumbnail_url TEXT,
    keywords TEXT NOT NULL
);
CREATE VIRTUAL TABLE words USING fts5(
    title, description, keywords,
    tokenize = "unicode61 remove_diacritics 0 categories 'L* N* M* Co'", prefix = '1 2 3'
);
PRAGMA user_version = 1;
)sql";

constexpr const char *itemColumns =
    "items.identifier, items.domain, items.content_type, items.title, items.description, "
    "items.duration, items.content_url, items.thumbnail_url, items.keywords";

}

bool SearchIndexError::meansDamage() const
{
    const int primary = m_code & 0xFF;
    return primary == SQLITE_CORRUPT || primary == SQLITE_NOTADB;
}

void SearchIndexStore::moveAside(const QString &file)
{
    const QString dated =
        file + QStringLiteral(".damaged-") +
        QDateTime::currentDateTimeUtc().toString(QStringLiteral("yyyyMMdd-HHmmss"));
    for (const char *part : {"-wal", "-shm", ""}) {
        const QLatin1String suffix(part);
        QFile::rename(file + suffix, dated + suffix);
    }
    logLine(LogTag::engine, "the search index is damaged and begins anew; the old one is kept as " +
                                dated.toStdString());
}

/// A prepared statement; finalized at the end of the scope.
class SearchIndexStore::Statement {
public:
    Statement(const SearchIndexStore &store, const char *sql) : m_store(store)
    {
        const int code = sqlite3_prepare_v2(store.m_database, sql, -1, &m_statement, nullptr);
        if (code != SQLITE_OK) {
            store.fail(code);
        }
    }
    ~Statement() { sqlite3_finalize(m_statement); }
    Statement(const Statement &) = delete;
    Statement &operator=(const Statement &) = delete;

    void bind(int column, const QString &text)
    {
        const QByteArray utf8 = text.toUtf8();
        sqlite3_bind_text64(m_statement, column, utf8.constData(), sqlite3_uint64(utf8.size()),
                            SQLITE_TRANSIENT, SQLITE_UTF8);
    }
    void bind(int column, const std::optional<QString> &text)
    {
        if (text) {
            bind(column, *text);
        }
    }
    void bind(int column, const std::optional<QUrl> &url)
    {
        if (url) {
            bind(column, QString::fromLatin1(url->toEncoded()));
        }
    }
    void bind(int column, std::optional<double> number)
    {
        if (number) {
            sqlite3_bind_double(m_statement, column, *number);
        }
    }
    void bind(int column, qint64 number) { sqlite3_bind_int64(m_statement, column, number); }

    /// Whether there is a row.
    bool step()
    {
        const int code = sqlite3_step(m_statement);
        if (code != SQLITE_ROW && code != SQLITE_DONE) {
            m_store.fail(code);
        }
        return code == SQLITE_ROW;
    }

    [[nodiscard]] bool isNull(int column) const
    {
        return sqlite3_column_type(m_statement, column) == SQLITE_NULL;
    }
    /// Valid until the next step.
    [[nodiscard]] std::string_view bytes(int column) const
    {
        const void *const bytes = sqlite3_column_blob(m_statement, column);
        return {static_cast<const char *>(bytes),
                std::size_t(sqlite3_column_bytes(m_statement, column))};
    }
    [[nodiscard]] QString text(int column) const
    {
        const std::string_view utf8 = bytes(column);
        return QString::fromUtf8(utf8.data(), qsizetype(utf8.size()));
    }
    [[nodiscard]] std::optional<QUrl> url(int column) const
    {
        return isNull(column) ? std::nullopt
                              : std::optional(QUrl::fromEncoded(text(column).toLatin1()));
    }
    [[nodiscard]] qint64 integer(int column) const
    {
        return sqlite3_column_int64(m_statement, column);
    }
    /// The item of a row of itemColumns.
    [[nodiscard]] SearchableItem item() const
    {
        SearchableItem item;
        item.uniqueIdentifier = text(0);
        item.domainIdentifier = text(1);
        item.contentType = text(2);
        item.title = text(3);
        if (!isNull(4)) {
            item.contentDescription = text(4);
        }
        if (!isNull(5)) {
            item.durationSeconds = sqlite3_column_double(m_statement, 5);
        }
        item.contentURL = url(6);
        item.thumbnailURL = url(7);
        item.keywords = text(8).split(keywordSeparator, Qt::SkipEmptyParts);
        return item;
    }

private:
    const SearchIndexStore &m_store;
    sqlite3_stmt *m_statement = nullptr;
};

SearchIndexStore::SearchIndexStore(const QString &file, Access access)
{
    try {
        if (access == Access::write) {
            open(file, SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE);
            prepareForWriting();
        } else {
            // A file whose writer was killed can be read only by who may set it right.
            open(file, SQLITE_OPEN_READWRITE);
            execute("PRAGMA query_only = ON");
        }
    } catch (...) {
        close();
        throw;
    }
}

SearchIndexStore::~SearchIndexStore()
{
    close();
}

void SearchIndexStore::open(const QString &file, int flags)
{
    const int code = sqlite3_open_v2(file.toUtf8().constData(), &m_database,
                                     flags | SQLITE_OPEN_NOMUTEX, nullptr);
    if (code != SQLITE_OK) {
        fail(code);
    }
    sqlite3_busy_timeout(m_database, searchBusyMilliseconds);
    if ((flags & SQLITE_OPEN_CREATE) == 0) {
        sqlite3_db_config(m_database, SQLITE_DBCONFIG_NO_CKPT_ON_CLOSE, 1, nullptr);
    }
    Statement version(*this, "PRAGMA user_version");
    const qint64 found = version.step() ? version.integer(0) : 0;
    if (found > searchIndexVersion) {
        throw SearchIndexError(SQLITE_CANTOPEN, "it is of a later version");
    }
    m_hasTables = found != 0;
}

void SearchIndexStore::close()
{
    sqlite3_close_v2(std::exchange(m_database, nullptr));
}

void SearchIndexStore::prepareForWriting()
{
    // The index can be made again from what it was made from: no wait for the disk at each write.
    execute("PRAGMA journal_mode = WAL; PRAGMA synchronous = NORMAL; BEGIN IMMEDIATE");
    qint64 found = 0;
    {
        Statement version(*this, "PRAGMA user_version");
        found = version.step() ? version.integer(0) : 0;
    }
    if (found == 0) {
        execute(searchIndexTables);
    }
    execute("COMMIT");
    m_hasTables = true;
}

void SearchIndexStore::write(const std::vector<SearchableItem> &items)
{
    execute("BEGIN IMMEDIATE");
    try {
        for (const SearchableItem &item : items) {
            writeItem(item);
        }
        execute("COMMIT");
    } catch (...) {
        sqlite3_exec(m_database, "ROLLBACK", nullptr, nullptr, nullptr);
        throw;
    }
}

void SearchIndexStore::writeItem(const SearchableItem &item)
{
    Statement row(*this, "INSERT INTO items (identifier, domain, content_type, title, description, "
                         "duration, content_url, thumbnail_url, keywords) "
                         "VALUES (?1, ?2, ?3, ?4, ?5, ?6, ?7, ?8, ?9) "
                         "ON CONFLICT (identifier) DO UPDATE SET domain = ?2, content_type = ?3, "
                         "title = ?4, description = ?5, duration = ?6, content_url = ?7, "
                         "thumbnail_url = ?8, keywords = ?9 RETURNING row");
    row.bind(1, item.uniqueIdentifier);
    row.bind(2, item.domainIdentifier);
    row.bind(3, item.contentType);
    row.bind(4, item.title);
    row.bind(5, item.contentDescription);
    row.bind(6, item.durationSeconds);
    row.bind(7, item.contentURL);
    row.bind(8, item.thumbnailURL);
    row.bind(9, item.keywords.join(keywordSeparator));
    const qint64 number = row.step() ? row.integer(0) : 0;
    (void)row.step();

    Statement words(*this, "INSERT OR REPLACE INTO words (rowid, title, description, keywords) "
                           "VALUES (?1, ?2, ?3, ?4)");
    words.bind(1, number);
    words.bind(2, foldedForSearch(item.title));
    words.bind(3, foldedForSearch(item.contentDescription.value_or(QString())));
    words.bind(4, foldedForSearch(item.keywords.join(QLatin1Char(' '))));
    (void)words.step();
}

std::vector<SearchableItem> SearchIndexStore::matching(const QString &query, int limit) const
{
    if (!m_hasTables) {
        return {};
    }
    const std::string sql = std::string("SELECT ") + itemColumns +
                            " FROM (SELECT rowid AS number, bm25(words, 10.0, 4.0, 1.0) AS rank "
                            "FROM words WHERE words MATCH ?1 ORDER BY rowid DESC LIMIT ?3) "
                            "JOIN items ON items.row = number ORDER BY rank, number DESC LIMIT ?2";
    Statement rows(*this, sql.c_str());
    rows.bind(1, query);
    rows.bind(2, qint64(limit));
    rows.bind(3, mostRanked);
    std::vector<SearchableItem> found;
    while (rows.step()) {
        found.push_back(rows.item());
    }
    return found;
}

std::optional<SearchableItem> SearchIndexStore::item(const QString &identifier) const
{
    if (!m_hasTables) {
        return std::nullopt;
    }
    const std::string sql =
        std::string("SELECT ") + itemColumns + " FROM items WHERE identifier = ?1";
    Statement row(*this, sql.c_str());
    row.bind(1, identifier);
    return row.step() ? std::optional(row.item()) : std::nullopt;
}

void SearchIndexStore::eachIdentifier(const std::function<void(std::string_view)> &take) const
{
    if (!m_hasTables) {
        return;
    }
    Statement row(*this, "SELECT identifier FROM items ORDER BY identifier");
    while (row.step()) {
        take(row.bytes(0));
    }
}

void SearchIndexStore::execute(const char *sql) const
{
    const int code = sqlite3_exec(m_database, sql, nullptr, nullptr, nullptr);
    if (code != SQLITE_OK) {
        fail(code);
    }
}

void SearchIndexStore::fail(int code) const
{
    throw SearchIndexError(code, m_database ? sqlite3_errmsg(m_database) : sqlite3_errstr(code));
}

}
