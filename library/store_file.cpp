// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "library/store_file.h"

#include "library/database.h"
#include "library/store_schema.h"
#include "platform/log.h"
#include "platform/user_folders.h"

#include <QDateTime>
#include <QFile>
#include <QFileInfo>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>
#include <utility>

namespace veltro {
namespace {

/// A log without the file that it belongs to. SQLite would drop it, and what is in it.
bool isLogAlone(const QString &file)
{
    return QFileInfo(file).size() == 0 && QFileInfo(file + QStringLiteral("-wal")).size() > 0;
}

void moveFile(const QString &from, const QString &to)
{
    if (QFile::exists(from) &&
        std::rename(QFile::encodeName(from).constData(), QFile::encodeName(to).constData()) != 0) {
        throw StoreError(StoreError::Kind::damaged, std::strerror(errno));
    }
}

StoreError::Kind lockFailure(int reason)
{
    switch (reason) {
    case EACCES:
    case EPERM:
    case EROFS:
        return StoreError::Kind::readOnly;
    case ENOSPC:
    case EDQUOT:
        return StoreError::Kind::full;
    default:
        return StoreError::Kind::other;
    }
}

/// A name of today that nothing has.
QString asideName(const QString &file)
{
    const QString stem = file + QDateTime::currentDateTime().toString(
                                    QStringLiteral("'.damaged-'yyyy-MM-dd'T'HH-mm-ss"));
    QString name = stem;
    for (int count = 2; QFile::exists(name) || QFile::exists(name + QStringLiteral("-wal"));
         ++count) {
        name = stem + u'-' + QString::number(count);
    }
    return name;
}

/// The file itself goes last: until then, the next one to open it tries again.
void moveAside(const QString &file)
{
    const QString aside = asideName(file);
    for (const char *const part : {"-wal", "-shm", ""}) {
        moveFile(file + QLatin1String(part), aside + QLatin1String(part));
    }
    logLine(LogTag::engine, "The library's file is damaged. It is kept as " + aside.toStdString());
}

}

QString storeFile()
{
    return dataFolder() + QStringLiteral("/library.sqlite");
}

StoreFile::StoreFile(const QString &file) : m_path(file)
{
    lock();
    try {
        openOrBeginAgain();
        flock(m_lock, LOCK_SH);
    } catch (...) {
        m_first.reset();
        ::close(m_lock);
        throw;
    }
}

StoreFile::~StoreFile()
{
    m_first.reset();
    m_database.reset();
    ::close(m_lock);
}

Database &StoreFile::database()
{
    if (!m_database) {
        std::unique_ptr<Database> first = takeFirst();
        m_database = first ? std::move(first) : open();
    }
    return *m_database;
}

std::unique_ptr<Database> StoreFile::takeFirst()
{
    const std::lock_guard guard(m_lockOfFirst);
    return std::exchange(m_first, nullptr);
}

void StoreFile::lock()
{
    const QByteArray name = QFile::encodeName(m_path + QStringLiteral(".lock"));
    m_lock = ::open(name.constData(), O_RDWR | O_CREAT | O_CLOEXEC, S_IRUSR | S_IWUSR);
    if (m_lock < 0) {
        throw StoreError(lockFailure(errno), std::strerror(errno));
    }
    while (flock(m_lock, LOCK_SH) != 0 && errno == EINTR) { // waits at most for another's start
    }
}

bool StoreFile::lockAlone() const
{
    return flock(m_lock, LOCK_EX | LOCK_NB) == 0;
}

void StoreFile::openOrBeginAgain()
{
    try {
        m_first = open();
        return;
    } catch (const StoreError &error) {
        if (error.kind() != StoreError::Kind::damaged || !lockAlone()) {
            throw;
        }
    }
    // Nobody else is here now; but someone may have been since, and set it right.
    try {
        m_first = open();
        return;
    } catch (const StoreError &error) {
        if (error.kind() != StoreError::Kind::damaged) {
            throw;
        }
    }
    moveAside(m_path);
    m_first = open();
}

std::unique_ptr<Database> StoreFile::open() const
{
    if (isLogAlone(m_path)) {
        throw StoreError(StoreError::Kind::damaged, "a log without its file");
    }
    auto database = std::make_unique<Database>(m_path);
    // The log of a file that turns out damaged is kept as it is.
    database->setTidiesUpOnClose(false);
    prepareStore(*database);
    database->setTidiesUpOnClose(true);
    return database;
}

}
