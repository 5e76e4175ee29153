// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once
#include "engine/media/media_info.h"

#include <QString>
#include <QUrl>

#include <optional>
#include <variant>

namespace veltro {

/// The run knows what it downloads.
struct DownloadStarted {
    MediaInfo info;
    bool operator==(const DownloadStarted &) const = default;
};

/// One report of yt-dlp's downloader. Fragments count from 1; the index may pass the count.
struct DownloadProgressed {
    qint64 bytesDone = 0;
    std::optional<qint64> bytesTotal;
    std::optional<double> speed; ///< bytes per second
    std::optional<double> eta;   ///< seconds
    std::optional<qint64> fragmentIndex;
    std::optional<qint64> fragmentCount;
    bool operator==(const DownloadProgressed &) const = default;
};

/// A step after the download has begun.
struct DownloadPostProcessing {
    QString stage;
    bool operator==(const DownloadPostProcessing &) const = default;
};

/// The file stands under its final name.
struct DownloadFinished {
    QUrl fileURL;
    bool operator==(const DownloadFinished &) const = default;
};

/// What a run reports, in order: started, then progress and post-processing, then finished.
using DownloadEvent =
    std::variant<DownloadStarted, DownloadProgressed, DownloadPostProcessing, DownloadFinished>;

}
