// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTest>

namespace veltro::test {

/// All that a file holds; nothing where it cannot be read.
inline QByteArray contentOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

/// Writes a file, and makes the folders that it needs; fails the running test if it cannot.
inline bool writeFile(const QString &path, const QByteArray &content)
{
    QDir().mkpath(QFileInfo(path).path());
    QFile file(path);
    const bool isWritten =
        file.open(QIODevice::WriteOnly) && file.write(content) == content.size() && file.flush();
    return QTest::qVerify(isWritten, "the file is written", qPrintable(path), __FILE__, __LINE__);
}

}
