// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "library/database.h"

#include <sqlite3.h>

#include <QFile>
#include <QUuid>

#include <utility>

namespace veltro {
namespace {

constexpr int busyMilliseconds = 5'000;

StoreError::Kind kindOf(int code)
{
    switch (code & 0xff) {
    case SQLITE_CORRUPT:
    case SQLITE_NOTADB:
        return StoreError::Kind::damaged;
    case SQLITE_READONLY:
    case SQLITE_PERM:
        return StoreError::Kind::readOnly;
    case SQLITE_FULL:
        return StoreError::Kind::full;
    case SQLITE_BUSY:
    case SQLITE_LOCKED:
        return StoreError::Kind::locked;
    default:
        return StoreError::Kind::other;
    }
}

[[noreturn]] void fail(sqlite3 *connection, int code)
{
    // Without a connection there was no memory for one.
    const char *const text =
        connection != nullptr ? sqlite3_errmsg(connection) : sqlite3_errstr(code);
    throw StoreError(kindOf(code), text);
}

std::string_view viewOf(const QByteArray &bytes)
{
    return {bytes.constData(), static_cast<std::size_t>(bytes.size())};
}

}

void Statement::Finalize::operator()(sqlite3_stmt *statement) const
{
    sqlite3_finalize(statement);
}

void Statement::bind(int parameter, qint64 value)
{
    sqlite3_bind_int64(m_statement.get(), parameter, value);
}

void Statement::bind(int parameter, double value)
{
    sqlite3_bind_double(m_statement.get(), parameter, value);
}

void Statement::bind(int parameter, std::string_view text)
{
    // A view without a place would bind NULL.
    const char *const place = text.data() != nullptr ? text.data() : "";
    sqlite3_bind_text64(m_statement.get(), parameter, place, text.size(), SQLITE_TRANSIENT,
                        SQLITE_UTF8);
}

void Statement::bind(int parameter, const QByteArray &bytes)
{
    sqlite3_bind_blob64(m_statement.get(), parameter, bytes.constData(),
                        static_cast<sqlite3_uint64>(bytes.size()), SQLITE_TRANSIENT);
}

void Statement::bind(int parameter, const QString &text)
{
    bind(parameter, viewOf(text.toUtf8()));
}

void Statement::bind(int parameter, const QUrl &url)
{
    bind(parameter, viewOf(url.toEncoded()));
}

void Statement::bind(int parameter, const QUuid &id)
{
    bind(parameter, viewOf(id.toByteArray(QUuid::WithoutBraces)));
}

void Statement::bindNull(int parameter)
{
    sqlite3_bind_null(m_statement.get(), parameter);
}

bool Statement::step()
{
    const int code = sqlite3_step(m_statement.get());
    if (code != SQLITE_ROW && code != SQLITE_DONE) {
        const StoreError error(kindOf(code), sqlite3_errmsg(sqlite3_db_handle(m_statement.get())));
        sqlite3_reset(m_statement.get());
        throw error;
    }
    return code == SQLITE_ROW;
}

void Statement::run()
{
    while (step()) {}
    reset();
}

void Statement::reset()
{
    sqlite3_reset(m_statement.get());
    sqlite3_clear_bindings(m_statement.get());
}

bool Statement::isNull(int column) const
{
    return sqlite3_column_type(m_statement.get(), column) == SQLITE_NULL;
}

qint64 Statement::integer(int column) const
{
    return sqlite3_column_int64(m_statement.get(), column);
}

double Statement::real(int column) const
{
    return sqlite3_column_double(m_statement.get(), column);
}

std::string_view Statement::text(int column) const
{
    // A connection without a mutex lets its values be read as they are, which takes half the calls.
    sqlite3_value *const value = sqlite3_column_value(m_statement.get(), column);
    const auto *const bytes = static_cast<const char *>(sqlite3_value_blob(value));
    const int size = sqlite3_value_bytes(value);
    return bytes != nullptr ? std::string_view(bytes, static_cast<std::size_t>(size))
                            : std::string_view();
}

void Database::Close::operator()(sqlite3 *connection) const
{
    sqlite3_close_v2(connection);
}

Database::Database(const QString &file)
{
    // Nobody asks for the sums of memory, which cost a lock for each piece. Only before the first
    // connection; a later request is refused, and harmless.
    static const int counting = sqlite3_config(SQLITE_CONFIG_MEMSTATUS, 0);
    (void)counting;
    sqlite3 *connection = nullptr;
    const int code =
        sqlite3_open_v2(QFile::encodeName(file).constData(), &connection,
                        SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE | SQLITE_OPEN_NOMUTEX, nullptr);
    m_connection.reset(connection);
    if (code != SQLITE_OK) {
        fail(connection, code);
    }
    if (sqlite3_db_readonly(connection, "main") == 1) {
        throw StoreError(StoreError::Kind::readOnly, "no right to write the file");
    }
    sqlite3_extended_result_codes(connection, 1);
    sqlite3_busy_timeout(connection, busyMilliseconds);
    sqlite3_db_config(connection, SQLITE_DBCONFIG_DEFENSIVE, 1, nullptr);
}

void Database::execute(const char *statements)
{
    const int code = sqlite3_exec(m_connection.get(), statements, nullptr, nullptr, nullptr);
    if (code != SQLITE_OK) {
        fail(m_connection.get(), code);
    }
}

Statement Database::prepare(std::string_view statement)
{
    sqlite3_stmt *prepared = nullptr;
    const int code = sqlite3_prepare_v2(m_connection.get(), statement.data(),
                                        static_cast<int>(statement.size()), &prepared, nullptr);
    if (code != SQLITE_OK) {
        fail(m_connection.get(), code);
    }
    return Statement(prepared);
}

qint64 Database::number(std::string_view query)
{
    Statement statement = prepare(query);
    return statement.step() ? statement.integer(0) : 0;
}

QString Database::text(std::string_view query)
{
    Statement statement = prepare(query);
    if (!statement.step()) {
        return {};
    }
    const std::string_view text = statement.text(0);
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

void Database::setTidiesUpOnClose(bool tidiesUp)
{
    sqlite3_db_config(m_connection.get(), SQLITE_DBCONFIG_NO_CKPT_ON_CLOSE, tidiesUp ? 0 : 1,
                      nullptr);
}

Transaction::Transaction(Database &database) : m_database(database)
{
    m_database.execute("BEGIN IMMEDIATE");
}

Transaction::~Transaction()
{
    if (m_isOpen) {
        try {
            m_database.execute("ROLLBACK");
        } catch (const StoreError &) {
            // SQLite has undone it already, as it does when the disk is full.
        }
    }
}

void Transaction::commit()
{
    m_database.execute("COMMIT");
    m_isOpen = false;
}

}
