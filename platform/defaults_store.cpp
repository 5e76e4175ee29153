// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/defaults_store.h"

#include "platform/user_folders.h"
#include "platform/whole_file.h"

#include <QDateTime>
#include <QFile>
#include <QFileInfo>
#include <QLockFile>
#include <QSettings>
#include <QTemporaryDir>

#include <algorithm>

namespace veltro {
namespace {

constexpr int longestWait = 5'000; // ms, for another process that saves

/// Whether the file has all that the settings have.
bool hasAllOf(const QSettings &settings, const QString &file)
{
    const QSettings read(file, QSettings::IniFormat);
    const QStringList keys = settings.allKeys();
    return read.allKeys() == keys && std::all_of(keys.begin(), keys.end(), [&](const QString &key) {
               return read.value(key) == settings.value(key);
           });
}

/// QSettings reads a file again when its time is another, and the clocks of file systems are
/// coarse.
void makeNewerThan(const QDateTime &moment, const QString &path)
{
    QFile file(path);
    if (QFileInfo(path).lastModified() <= moment && file.open(QIODevice::ReadWrite)) {
        file.setFileTime(moment.addMSecs(1), QFileDevice::FileModificationTime);
    }
}

/// A settings file with one more document in it; nothing when that does not come out right.
/// QSettings takes a disk that becomes full for a success, and the old file is gone by then: it
/// writes into a folder of its own, and what it wrote is read again under another name, since it
/// keeps what it believes to be in a file.
std::optional<QByteArray> withDocument(const QString &file, const QString &key,
                                       const QByteArray &data)
{
    const QTemporaryDir folder(file + QStringLiteral(".XXXXXX"));
    const QString draft = folder.filePath(QStringLiteral("draft.ini"));
    const QString written = folder.filePath(QStringLiteral("written.ini"));
    if (!folder.isValid() || (QFile::exists(file) && !QFile::copy(file, draft))) {
        return std::nullopt;
    }
    QSettings settings(draft, QSettings::IniFormat);
    settings.setValue(key, data);
    settings.sync();
    QFile result(written);
    if (!QFile::rename(draft, written) || !hasAllOf(settings, written) ||
        !result.open(QIODevice::ReadOnly)) {
        return std::nullopt;
    }
    return result.readAll();
}

}

DefaultsStore::DefaultsStore()
    : DefaultsStore(configurationFolder() + QStringLiteral("/veltro.ini"))
{}

std::optional<QByteArray> DefaultsStore::data(const QString &key) const
{
    const QSettings settings(m_file, QSettings::IniFormat);
    const QVariant value = settings.value(key);
    // A text that a person has typed into the file is as good as the bytes that we write.
    const int type = value.typeId();
    if (type != QMetaType::QByteArray && type != QMetaType::QString) {
        return std::nullopt;
    }
    return value.toByteArray();
}

bool DefaultsStore::setData(const QString &key, const QByteArray &data) const
{
    QLockFile lock(m_file + QStringLiteral(".lock"));
    if (!lock.tryLock(longestWait)) {
        return false;
    }
    const std::optional<QByteArray> content = withDocument(m_file, key, data);
    const QDateTime before = QFileInfo(m_file).lastModified();
    if (!content || writeWholeFile(m_file, *content)) {
        return false;
    }
    makeNewerThan(before, m_file);
    return true;
}

}
