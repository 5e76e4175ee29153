// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once
#include <QString>

#include <memory>
#include <mutex>

namespace veltro {

class Database;

/// Where the library is kept: library.sqlite in the user's data folder.
[[nodiscard]] QString storeFile();

/// A store in use. While one exists, in this process or another, nobody moves the file aside.
class StoreFile {
public:
    /// Opens the store, or begins one. A file that SQLite calls damaged is moved aside under a
    /// dated name, with its -wal and -shm, unless someone else uses it; every other one stays.
    /// @throws StoreError
    explicit StoreFile(const QString &file);
    ~StoreFile();
    StoreFile(const StoreFile &) = delete;
    StoreFile &operator=(const StoreFile &) = delete;

    [[nodiscard]] const QString &path() const { return m_path; }
    /// The connection that writes, opened when it is first needed. Guarded by its user.
    /// @throws StoreError
    [[nodiscard]] Database &database();
    /// The connection that the store was opened with, for the first who needs one; null for all
    /// others. Any thread.
    [[nodiscard]] std::unique_ptr<Database> takeFirst();

private:
    void lock();
    [[nodiscard]] bool lockAlone() const;
    void openOrBeginAgain();
    [[nodiscard]] std::unique_ptr<Database> open() const;

    const QString m_path;
    int m_lock = -1; // of the lock file: shared by all who use the store
    std::unique_ptr<Database> m_database;
    std::mutex m_lockOfFirst;
    std::unique_ptr<Database> m_first; // guarded by m_lockOfFirst
};

}
