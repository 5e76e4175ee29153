// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once
#include "library/store_error.h"

#include <QDateTime>
#include <QString>
#include <QUrl>

#include <memory>
#include <optional>
#include <string_view>

struct sqlite3;
struct sqlite3_stmt;

namespace veltro {

/// One statement. Columns and parameters count from 0 and 1, as SQLite has them. A text or
/// its bytes are valid until the next step; absent values bind and read as NULL. Addresses are kept
/// encoded, moments as milliseconds since 1970.
class Statement {
public:
    explicit Statement(sqlite3_stmt *statement) : m_statement(statement) {}

    void bind(int parameter, qint64 value);
    void bind(int parameter, double value);
    void bind(int parameter, std::string_view text);
    void bind(int parameter, const QByteArray &bytes);
    void bind(int parameter, const QString &text);
    void bind(int parameter, const QUrl &url);
    void bind(int parameter, const QUuid &id);
    void bind(int parameter, const QDateTime &moment)
    {
        bind(parameter, moment.toMSecsSinceEpoch());
    }
    template <typename Value>
    void bind(int parameter, const std::optional<Value> &value)
    {
        if (value) {
            bind(parameter, *value);
        } else {
            bindNull(parameter);
        }
    }

    /// Whether there is a row now. @throws StoreError
    bool step();
    /// Runs to the end and makes ready for the next run, without parameters. @throws StoreError
    void run();
    void reset();

    [[nodiscard]] bool isNull(int column) const;
    [[nodiscard]] qint64 integer(int column) const;
    [[nodiscard]] double real(int column) const;
    [[nodiscard]] std::string_view text(int column) const;

private:
    struct Finalize {
        void operator()(sqlite3_stmt *statement) const;
    };

    void bindNull(int parameter);

    std::unique_ptr<sqlite3_stmt, Finalize> m_statement; // ends before its connection
};

/// One connection to a SQLite file. Used by one thread at a time.
class Database {
public:
    /// Opens the file, making an empty one where there is none. Waits for another's lock for
    /// seconds, not for ever. @throws StoreError
    explicit Database(const QString &file);

    /// Runs statements that yield nothing. @throws StoreError
    void execute(const char *statements);
    /// @throws StoreError
    [[nodiscard]] Statement prepare(std::string_view statement);
    /// The one number that a query yields; 0 when it yields none. @throws StoreError
    [[nodiscard]] qint64 number(std::string_view query);
    /// The one text that a query yields. @throws StoreError
    [[nodiscard]] QString text(std::string_view query);

    /// Whether the last connection that closes folds the log into the file, as it normally does.
    void setTidiesUpOnClose(bool tidiesUp);

private:
    struct Close {
        void operator()(sqlite3 *connection) const;
    };

    std::unique_ptr<sqlite3, Close> m_connection;
};

/// Changes that happen together. What was not committed is undone at the end of the scope.
class Transaction {
public:
    /// Waits for its turn to write. @throws StoreError
    explicit Transaction(Database &database);
    ~Transaction();
    Transaction(const Transaction &) = delete;
    Transaction &operator=(const Transaction &) = delete;

    /// When it returns, the changes are on the disk. @throws StoreError
    void commit();

private:
    Database &m_database;
    bool m_isOpen = true;
};

}
