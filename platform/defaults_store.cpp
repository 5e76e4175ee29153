// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/defaults_store.h"

#include "platform/log.h"
#include "platform/serial_queue.h"
#include "platform/user_folders.h"
#include "platform/whole_file.h"

#include <QDateTime>
#include <QFile>
#include <QFileInfo>
#include <QHash>
#include <QLockFile>
#include <QSettings>
#include <QTemporaryDir>

#include <algorithm>
#include <mutex>
#include <utility>

namespace veltro {
namespace {

using Documents = QHash<QString, QByteArray>;

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

/// A settings file with these documents in it; nothing when that does not come out right.
/// QSettings takes a disk that becomes full for a success, and the old file is gone by then: it
/// writes into a folder of its own, and what it wrote is read again under another name, since it
/// keeps what it believes to be in a file.
std::optional<QByteArray> withDocuments(const QString &file, const Documents &documents)
{
    const QTemporaryDir folder(file + QStringLiteral(".XXXXXX"));
    const QString draft = folder.filePath(QStringLiteral("draft.ini"));
    const QString written = folder.filePath(QStringLiteral("written.ini"));
    if (!folder.isValid() || (QFile::exists(file) && !QFile::copy(file, draft))) {
        return std::nullopt;
    }
    QSettings settings(draft, QSettings::IniFormat);
    for (auto document = documents.begin(); document != documents.end(); ++document) {
        settings.setValue(document.key(), document.value());
    }
    settings.sync();
    QFile result(written);
    if (!QFile::rename(draft, written) || !hasAllOf(settings, written) ||
        !result.open(QIODevice::ReadOnly)) {
        return std::nullopt;
    }
    return result.readAll();
}

/// REQUIRES: the file's lock. @returns whether they are on the disk now
bool writeDocuments(const QString &file, const Documents &documents)
{
    const std::optional<QByteArray> content = withDocuments(file, documents);
    const QDateTime before = QFileInfo(file).lastModified();
    if (!content || writeWholeFile(file, *content)) {
        return false;
    }
    makeNewerThan(before, file);
    return true;
}

std::optional<QByteArray> documentIn(const QString &file, const QString &key)
{
    const QSettings settings(file, QSettings::IniFormat);
    const QVariant value = settings.value(key);
    // A text that a person has typed into the file is as good as the bytes that we write.
    const int type = value.typeId();
    if (type != QMetaType::QByteArray && type != QMetaType::QString) {
        return std::nullopt;
    }
    return value.toByteArray();
}

}

/// What the stores over one file share: what was set and is not on the disk yet.
class DefaultsStore::File {
public:
    explicit File(QString path) : m_path(std::move(path)) {}
    ~File();
    File(const File &) = delete;
    File &operator=(const File &) = delete;

    /// The one of that path.
    static std::shared_ptr<File> at(const QString &path);

    std::optional<QByteArray> data(const QString &key) const;
    void setData(const QString &key, const QByteArray &data);

private:
    void queueWrite();
    void write();
    Documents takeTurn();
    void forget(const Documents &written);

    const QString m_path;
    mutable std::mutex m_lock;
    Documents m_unwritten;                // guarded by m_lock
    bool m_isQueued = false;              // guarded by m_lock
    std::unique_ptr<SerialQueue> m_queue; // made on first use under m_lock; ends first
};

DefaultsStore::File::~File()
{
    const std::lock_guard guard(m_lock);
    if (!m_unwritten.isEmpty()) {
        queueWrite();
    }
}

std::shared_ptr<DefaultsStore::File> DefaultsStore::File::at(const QString &path)
{
    static std::mutex mutex;
    static QHash<QString, std::weak_ptr<File>> files; // guarded by mutex
    const QString whole = QFileInfo(path).absoluteFilePath();
    const std::lock_guard guard(mutex);
    std::weak_ptr<File> &known = files[whole];
    std::shared_ptr<File> file = known.lock();
    if (!file) {
        file = std::make_shared<File>(whole);
        known = file;
    }
    return file;
}

std::optional<QByteArray> DefaultsStore::File::data(const QString &key) const
{
    {
        const std::lock_guard guard(m_lock);
        const auto found = m_unwritten.find(key);
        if (found != m_unwritten.end()) {
            return *found;
        }
    }
    return documentIn(m_path, key);
}

void DefaultsStore::File::setData(const QString &key, const QByteArray &data)
{
    const std::lock_guard guard(m_lock);
    m_unwritten.insert(key, data);
    queueWrite();
}

/// REQUIRES: m_lock is held.
void DefaultsStore::File::queueWrite()
{
    if (!m_queue) {
        m_queue = std::make_unique<SerialQueue>("com.veltro.defaults");
    }
    if (!std::exchange(m_isQueued, true)) {
        m_queue->async([this] { write(); });
    }
}

/// On the queue. What is set while another process has the file goes along.
void DefaultsStore::File::write()
{
    QLockFile fileLock(m_path + QStringLiteral(".lock"));
    const bool isOurs = fileLock.tryLock(longestWait);
    const Documents documents = takeTurn();
    if (documents.isEmpty()) {
        return;
    }
    if (isOurs && writeDocuments(m_path, documents)) {
        forget(documents);
    } else {
        const QString keys = QStringList(documents.keys()).join(QStringLiteral(", "));
        logLine(LogTag::engine, "the settings could not be saved: " + keys.toStdString());
    }
}

Documents DefaultsStore::File::takeTurn()
{
    const std::lock_guard guard(m_lock);
    m_isQueued = false;
    return m_unwritten;
}

/// But for those that have been set to something else since.
void DefaultsStore::File::forget(const Documents &written)
{
    const std::lock_guard guard(m_lock);
    for (auto document = written.begin(); document != written.end(); ++document) {
        const auto found = m_unwritten.constFind(document.key());
        if (found != m_unwritten.constEnd() && *found == document.value()) {
            m_unwritten.erase(found);
        }
    }
}

DefaultsStore::DefaultsStore()
    : DefaultsStore(configurationFolder() + QStringLiteral("/veltro.ini"))
{}

DefaultsStore::DefaultsStore(const QString &file) : m_file(File::at(file)) {}

std::optional<QByteArray> DefaultsStore::data(const QString &key) const
{
    return m_file->data(key);
}

void DefaultsStore::setData(const QString &key, const QByteArray &data) const
{
    m_file->setData(key, data);
}

}
