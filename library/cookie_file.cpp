// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "library/cookie_file.h"

#include "library/cookie_jar.h"
#include "library/model_container.h"
#include "platform/serial_queue.h"
#include "platform/whole_file.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>

#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <sys/file.h>
#include <system_error>
#include <unistd.h>

namespace veltro {
namespace {

const auto passingName = QStringLiteral(".being-written");

/// The folder's lock, for one process at a time. A file system that has no locks lets all pass.
class CookieFolderLock {
public:
    /// @param how LOCK_NB not to wait
    CookieFolderLock(const QString &folder, int how)
        : m_folder(
              ::open(QFile::encodeName(folder).constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC))
    {
        int result = 0;
        do { // a signal is no reason to go on without it
            result = flock(m_folder, LOCK_EX | how);
        } while (result != 0 && errno == EINTR);
        m_isHeld = result == 0;
    }
    ~CookieFolderLock()
    {
        if (m_folder >= 0) {
            ::close(m_folder);
        }
    }
    CookieFolderLock(const CookieFolderLock &) = delete;
    CookieFolderLock &operator=(const CookieFolderLock &) = delete;

    [[nodiscard]] bool isHeld() const { return m_isHeld; }

private:
    const int m_folder;
    bool m_isHeld = false;
};

/// REQUIRES: the folder's lock is held. Takes the drafts of writeWholeFile() too, which have six
/// letters more.
void removePassingFiles(const QDir &folder)
{
    static const QRegularExpression draft(
        QStringLiteral("^%1(\\.[A-Za-z]{6})?$").arg(QRegularExpression::escape(passingName)));
    const QStringList names =
        folder.entryList({passingName + u'*'}, QDir::Files | QDir::Hidden | QDir::NoSymLinks);
    for (const QString &name : names) {
        if (draft.match(name).hasMatch()) {
            QFile::remove(folder.filePath(name));
        }
    }
}

}

std::optional<QString> writeCookieFile(const QString &path, const QByteArray &content)
{
    constexpr auto ownerOnly = QFile::ReadOwner | QFile::WriteOwner;
    const QDir folder = QFileInfo(path).dir();
    const CookieFolderLock lock(folder.path(), 0);
    if (lock.isHeld()) {
        removePassingFiles(folder);
    }
    const QString passing = folder.filePath(passingName);
    if (std::optional<QString> reason = writeWholeFile(passing, content, ownerOnly)) {
        return reason;
    }
    if (std::rename(QFile::encodeName(passing).constData(), QFile::encodeName(path).constData()) !=
        0) {
        const int reason = errno;
        QFile::remove(passing);
        return QString::fromStdString(std::generic_category().message(reason));
    }
    return std::nullopt;
}

void removeCookieLeavings(const QString &folder)
{
    const CookieFolderLock lock(folder, LOCK_NB);
    if (lock.isHeld()) {
        removePassingFiles(QDir(folder));
    }
}

void removeCookieLeavingsInBackground()
{
    storeQueue().async([] {
        try {
            removeCookieLeavings(cookiesDirectory().toLocalFile());
        } catch (const std::system_error &) {
            // Without a folder nothing is left in it; who needs one is told.
        }
    });
}

}
