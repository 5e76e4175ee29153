// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once
#include "tests/files.h"

#include <QTemporaryDir>

namespace veltro {

/// A home of the test's own, with empty folders where the desktop keeps the user's; made before
/// the program under test looks for any. REQUIRES: no other thread reads the environment yet.
class PrivateHome {
public:
    PrivateHome()
    {
        qputenv("HOME", path().toUtf8());
        qputenv("XDG_CONFIG_HOME", path(QStringLiteral("config")).toUtf8());
        qputenv("XDG_DATA_HOME", path(QStringLiteral("data")).toUtf8());
        qputenv("XDG_CACHE_HOME", path(QStringLiteral("cache")).toUtf8());
    }

    /// A path below the home; the home itself without a name.
    [[nodiscard]] QString path(const QString &name = {}) const
    {
        return name.isEmpty() ? m_folder.path() : m_folder.filePath(name);
    }

    /// Writes a file below the home, and the folders that it needs.
    void write(const QString &name, const QByteArray &content) const
    {
        static_cast<void>(test::writeFile(path(name), content));
    }

private:
    const QTemporaryDir m_folder;
};

}
