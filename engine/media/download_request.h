// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once
#include <QString>
#include <QStringList>
#include <QUrl>
#include <QUuid>

#include <optional>

namespace veltro {

/// What one download run is asked to do. A plain value; any thread.
struct DownloadRequest {
    QUuid id;
    QUrl url;
    QString formatID;                ///< a selector or a format's identifier
    std::optional<QUrl> cookiesFile; ///< in the Netscape form; only ever read
    QString outputTemplate;
    QUrl downloadsDirectory;
    bool writeSubtitles = false; ///< write and embed
    QStringList subtitleLanguages;
    bool extractAudio = false;
    QString audioFormat;

    bool operator==(const DownloadRequest &) const = default;
};

}
