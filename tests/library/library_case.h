// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once
#include "library/library_items_model.h"
#include "library/model_container.h"
#include "library/model_context.h"
#include "platform/log.h"

#include <QTemporaryDir>
#include <QTest>

#include <mutex>

/// What tests of the library share: records, and what a list shows.
namespace veltro::test {

inline constexpr int patience = 30'000; // ms, for what takes far less

/// An item that was completed so many milliseconds after an hour long ago.
inline DownloadItem itemAt(qint64 moment, const QString &title, const QString &uploader = {})
{
    const QDateTime when = QDateTime::fromMSecsSinceEpoch(1'700'000'000'000 + moment, Qt::UTC);
    DownloadItem item;
    item.id = QUuid::createUuid();
    item.sourceURL = QUrl(QStringLiteral("https://example.com/watch?v=%1").arg(moment));
    item.title = title;
    item.uploader = uploader.isNull() ? std::nullopt : std::optional(uploader);
    item.formatLabel = QStringLiteral("1080p");
    item.fileSizeBytes = moment;
    item.stateRaw = QStringLiteral("done");
    item.createdAt = when;
    item.completedAt = when;
    return item;
}

inline bool save(const std::shared_ptr<ModelContainer> &container,
                 const std::vector<DownloadItem> &items)
{
    ModelContext context(container);
    for (const DownloadItem &item : items) {
        context.insert(item);
    }
    return context.save();
}

inline bool remove(const std::shared_ptr<ModelContainer> &container, const QList<QUuid> &ids)
{
    ModelContext context(container);
    for (const QUuid &id : ids) {
        context.removeItem(id);
    }
    return context.save();
}

/// The titles that a list shows, from the top.
inline QStringList titlesOf(const QAbstractItemModel &model)
{
    QStringList titles;
    for (int row = 0; row < model.rowCount(); ++row) {
        titles << model.index(row, 0).data(LibraryItemsModel::titleRole).toString();
    }
    return titles;
}

/// Collects the log's lines while it lives.
class LogLines {
public:
    LogLines()
    {
        setLogSink([this](std::string_view line) {
            const std::lock_guard guard(m_lock);
            m_lines << QString::fromUtf8(line.data(), static_cast<qsizetype>(line.size()));
        });
    }
    ~LogLines() { setLogSink({}); }
    LogLines(const LogLines &) = delete;
    LogLines &operator=(const LogLines &) = delete;

    [[nodiscard]] QStringList lines() const
    {
        const std::lock_guard guard(m_lock);
        return m_lines;
    }

private:
    mutable std::mutex m_lock;
    QStringList m_lines;
};

}
