// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/whole_file.h"

#include <QSaveFile>

#include <cerrno>
#include <unistd.h>

namespace veltro {
namespace {

/// Some file systems know no such thing, and say so.
bool isOnDisk(const QFileDevice &file)
{
    return fdatasync(file.handle()) == 0 || errno == EINVAL || errno == ENOSYS;
}

}

std::optional<QString> writeWholeFile(const QString &path, const QByteArray &content,
                                      std::optional<QFileDevice::Permissions> permissions)
{
    QSaveFile file(path);
    // Flushed here: commit() would give the file its name also when the disk is full by then.
    const bool isWritten = file.open(QIODevice::WriteOnly) &&
                           (!permissions || file.setPermissions(*permissions)) &&
                           file.write(content) == content.size() && file.flush() && isOnDisk(file);
    if (!isWritten) {
        file.cancelWriting();
    }
    return isWritten && file.commit() ? std::nullopt : std::optional(file.errorString());
}

}
