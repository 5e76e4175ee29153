// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once
#include <QString>
#include <QUrl>

#include <optional>
#include <vector>

namespace veltro {

class PythonObject;

/// One way to download a page's media, as yt-dlp lists it. A plain value; any thread.
struct Format {
    QString id;  ///< used verbatim in format selectors
    QString ext; ///< container extension, without the dot
    std::optional<QString> resolution;
    std::optional<double> fps;
    std::optional<QString> vcodec; ///< "none" for audio-only formats
    std::optional<QString> acodec; ///< "none" for video-only formats
    std::optional<double> bitrateKbps;
    std::optional<qint64> filesizeBytes; ///< exact or approximate
    bool isAudioOnly = false;
    bool isVideoOnly = false;
    std::optional<QString> note;

    /// Reads a format dictionary; every key may be missing or of another type.
    /// REQUIRES: inside an interpreter job.
    [[nodiscard]] static Format parse(const PythonObject &format);

    /// The one-line description that lists show.
    [[nodiscard]] QString label() const;

    bool operator==(const Format &) const = default;
};

/// One subtitle track of a page. A plain value; any thread.
struct Subtitle {
    QString language;
    QString ext;
    std::optional<QUrl> url;
    bool isAutomatic = false;

    /// The language and the extension, as in "en-vtt".
    [[nodiscard]] QString id() const;

    bool operator==(const Subtitle &) const = default;
};

/// What a page offers. A plain value; any thread.
struct MediaInfo {
    QString id;
    QString title;
    std::optional<QString> uploader;
    std::optional<double> durationSeconds;
    std::optional<QUrl> thumbnailURL;
    std::optional<QUrl> webpageURL;
    std::optional<QString> extractor;
    std::vector<Format> formats;     ///< in yt-dlp's order, worst first
    std::vector<Subtitle> subtitles; ///< manual tracks, then automatic captions
    bool isPlaylist = false;
    std::vector<MediaInfo> playlistEntries;

    /// Reads a sanitized information dictionary. Keys may be missing or of another type.
    /// REQUIRES: inside an interpreter job.
    /// @throws std::invalid_argument when it is not a dictionary at all.
    [[nodiscard]] static MediaInfo parse(const PythonObject &info);

    bool operator==(const MediaInfo &) const = default;
};

}
