// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "library/cookie_jar.h"

#include "platform/user_folders.h"

#include <QFile>
#include <QFileInfo>

#include <cerrno>
#include <sys/stat.h>
#include <system_error>

namespace veltro {

QUrl cookiesDirectory()
{
    const QString folder = dataFolder() + QStringLiteral("/cookies");
    if (mkdir(QFile::encodeName(folder).constData(), S_IRWXU) != 0) {
        const int reason = errno;
        if (reason != EEXIST || !QFileInfo(folder).isDir()) {
            throw std::system_error(reason, std::generic_category(),
                                    "The folder for cookies could not be made");
        }
    }
    return QUrl::fromLocalFile(folder);
}

std::optional<QUrl> cookieFileURL(const QString &host)
{
    // A URL's host holds neither; another text must not lead out of the folder.
    if (host.isEmpty() || host.contains(u'/') || host.contains(QChar::Null)) {
        return std::nullopt;
    }
    const QString folder = cookiesDirectory().toLocalFile();
    return QUrl::fromLocalFile(folder + u'/' + host + QStringLiteral(".cookies.txt"));
}

}
