// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once
#include "platform/search_index.h"

#include <memory>
#include <optional>
#include <stdexcept>

struct sqlite3;
struct sqlite3_stmt;

namespace veltro {

/// The index's file did not do as it was told.
class SearchIndexError : public std::runtime_error {
public:
    SearchIndexError(int code, const char *what) : std::runtime_error(what), m_code(code) {}
    /// The file is no database, or none that can be read any more.
    [[nodiscard]] bool meansDamage() const;

private:
    int m_code;
};

/// One connection to the index's file. One thread at a time.
class SearchIndexStore {
public:
    enum class Access { read, write };

    /// Keeps a damaged file under a dated name, out of the way. REQUIRES: not open here.
    static void moveAside(const QString &file);

    /// Writing makes the file when it is not there.
    /// @throws SearchIndexError
    SearchIndexStore(const QString &file, Access access);
    ~SearchIndexStore();
    SearchIndexStore(const SearchIndexStore &) = delete;
    SearchIndexStore &operator=(const SearchIndexStore &) = delete;

    /// All of them or none. @throws SearchIndexError
    void write(const std::vector<SearchableItem> &items);
    /// @throws SearchIndexError
    [[nodiscard]] std::vector<SearchableItem> matching(const QString &query, int limit) const;
    /// @throws SearchIndexError
    [[nodiscard]] std::optional<SearchableItem> item(const QString &identifier) const;
    /// In the order of their bytes. @throws SearchIndexError
    void eachIdentifier(const std::function<void(std::string_view)> &take) const;

private:
    class Statement;
    void open(const QString &file, int flags);
    void close();
    void prepareForWriting();
    void writeItem(const SearchableItem &item);
    void execute(const char *sql) const;
    [[noreturn]] void fail(int code) const;

    sqlite3 *m_database = nullptr; // owned
    bool m_hasTables = false;      // not yet, where a writer was killed at its start
};

}
