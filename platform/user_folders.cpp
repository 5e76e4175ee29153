// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/user_folders.h"

#include <QDir>
#include <QStandardPaths>

namespace veltro {
namespace {

/// The program's own folder of that kind. That it cannot be made shows when a file in it is
/// opened, and is told there.
QString ownFolder(QStandardPaths::StandardLocation location)
{
    const QString folder = QStandardPaths::writableLocation(location) + QStringLiteral("/veltro");
    QDir().mkpath(folder);
    return folder;
}

}

QString documentsFolder()
{
    return QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
}

QString dataFolder()
{
    return ownFolder(QStandardPaths::GenericDataLocation);
}

QString configurationFolder()
{
    return ownFolder(QStandardPaths::GenericConfigLocation);
}

}
