// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "library/store_schema.h"

#include "library/database.h"

namespace veltro {
namespace {

constexpr qint64 storeVersion = 1;
constexpr qint64 synchronousFull = 2;

// Moments are milliseconds since 1970.
constexpr auto tables = R"(
CREATE TABLE DownloadItem (
    id TEXT NOT NULL UNIQUE,
    sourceURL TEXT NOT NULL,
    title TEXT NOT NULL,
    uploader TEXT,
    durationSeconds REAL,
    thumbnailFileURL TEXT,
    localFileURL TEXT,
    formatLabel TEXT NOT NULL,
    fileSizeBytes INTEGER NOT NULL,
    stateRaw TEXT NOT NULL,
    failureReason TEXT,
    createdAt INTEGER NOT NULL,
    completedAt INTEGER,
    cookieHost TEXT
);
CREATE INDEX DownloadItem_completedAt ON DownloadItem (completedAt);
CREATE TABLE CookieJar (
    host TEXT NOT NULL UNIQUE,
    fileURL TEXT NOT NULL,
    updatedAt INTEGER NOT NULL
);
PRAGMA user_version = 1;
)";

// The search keys are derived from the items, in the folding of one kind of locale, and can be made
// again at any time: their table is no part of the version. It is in the order of the items' rows,
// so that both are read side by side; should somebody else have numbered the rows anew, the ids
// tell.
constexpr auto keyTable = R"(
DROP TRIGGER IF EXISTS DownloadItem_removed;
DROP TABLE IF EXISTS SearchKey;
CREATE TABLE RowSearchKey (
    number INTEGER PRIMARY KEY,
    item TEXT NOT NULL,
    folding TEXT NOT NULL,
    key BLOB NOT NULL
);
CREATE TRIGGER DownloadItem_removed AFTER DELETE ON DownloadItem BEGIN
    DELETE FROM RowSearchKey WHERE number = OLD.rowid;
END;
)";

struct Made {
    bool records = false;
    bool keys = false;
};

/// What the file has of this version's tables; nothing when it is empty.
Made tablesIn(Database &database)
{
    const qint64 version = database.number("PRAGMA user_version");
    if (version > storeVersion) {
        throw StoreError(StoreError::Kind::newer, "version " + std::to_string(version));
    }
    Statement count = database.prepare(
        "SELECT count(*) FILTER (WHERE name IN ('DownloadItem', 'CookieJar')), "
        "count(*) FILTER (WHERE name = 'RowSearchKey'), count(*) FROM sqlite_master");
    count.step();
    if (version == storeVersion && count.integer(0) == 2) {
        return {true, count.integer(1) == 1};
    }
    if (version != 0 || count.integer(2) != 0) {
        throw StoreError(StoreError::Kind::foreign, "other tables");
    }
    return {};
}

/// A write-ahead log, and commits that are on the disk when they return.
void makeDurable(Database &database)
{
    if (database.text("PRAGMA journal_mode = WAL") != QLatin1String("wal")) {
        throw StoreError(StoreError::Kind::other, "no write-ahead log here");
    }
    const auto isFull = [&] { return database.number("PRAGMA synchronous") == synchronousFull; };
    if (isFull()) {
        return; // as it is built, mostly
    }
    database.execute("PRAGMA synchronous = FULL");
    if (!isFull()) {
        throw StoreError(StoreError::Kind::other, "commits would not be durable");
    }
}

}

void prepareStore(Database &database)
{
    // What is not ours is looked at, and left as it is.
    Made made = tablesIn(database);
    makeDurable(database);
    if (made.records && made.keys) {
        return;
    }
    Transaction transaction(database);
    made = tablesIn(database); // another connection may have been first
    if (!made.records) {
        database.execute(tables);
    }
    if (!made.keys) {
        database.execute(keyTable);
    }
    transaction.commit();
}

}
