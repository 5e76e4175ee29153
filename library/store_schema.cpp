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

bool hasKeyTable(Database &database)
{
    return database.number("SELECT count(*) FROM sqlite_master WHERE name = 'RowSearchKey'") == 1;
}

/// Whether the file has this version's tables; false for an empty one.
bool hasTables(Database &database)
{
    const qint64 version = database.number("PRAGMA user_version");
    if (version > storeVersion) {
        throw StoreError(StoreError::Kind::newer, "version " + std::to_string(version));
    }
    const qint64 known = database.number(
        "SELECT count(*) FROM sqlite_master WHERE name IN ('DownloadItem', 'CookieJar')");
    if (version == storeVersion && known == 2) {
        return true;
    }
    if (version != 0 || database.number("SELECT count(*) FROM sqlite_master") != 0) {
        throw StoreError(StoreError::Kind::foreign, "other tables");
    }
    return false;
}

/// A write-ahead log, and commits that are on the disk when they return.
void makeDurable(Database &database)
{
    if (database.text("PRAGMA journal_mode = WAL") != QLatin1String("wal")) {
        throw StoreError(StoreError::Kind::other, "no write-ahead log here");
    }
    database.execute("PRAGMA synchronous = FULL");
    if (database.number("PRAGMA synchronous") != synchronousFull) {
        throw StoreError(StoreError::Kind::other, "commits would not be durable");
    }
}

}

void prepareStore(Database &database)
{
    // What is not ours is looked at, and left as it is.
    const bool isMade = hasTables(database);
    makeDurable(database);
    if (isMade && hasKeyTable(database)) {
        return;
    }
    Transaction transaction(database);
    if (!hasTables(database)) { // another connection may have been first
        database.execute(tables);
    }
    if (!hasKeyTable(database)) {
        database.execute(keyTable);
    }
    transaction.commit();
}

}
