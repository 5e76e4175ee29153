// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once
#include <QDateTime>
#include <QMetaType>
#include <QString>
#include <QUrl>
#include <QUuid>

#include <optional>

namespace veltro {

/// One saved download, as the store keeps it: a plain value, known by its id. Texts and the
/// addresses are as they were when the download ended. Moments are kept to the millisecond.
struct DownloadItem {
    QUuid id; ///< unique in the store
    QUrl sourceURL;
    QString title;
    std::optional<QString> uploader;
    std::optional<double> durationSeconds;
    std::optional<QUrl> thumbnailFileURL;
    std::optional<QUrl> localFileURL;
    QString formatLabel;
    qint64 fileSizeBytes = 0;
    QString stateRaw; ///< the program writes "done"
    std::optional<QString> failureReason;
    QDateTime createdAt;
    std::optional<QDateTime> completedAt;
    std::optional<QString> cookieHost;

    bool operator==(const DownloadItem &) const = default;
};

}

Q_DECLARE_METATYPE(veltro::DownloadItem)
