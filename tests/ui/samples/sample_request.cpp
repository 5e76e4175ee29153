// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/ui/samples/sample_request.h"

#include "tests/ui/samples/sample_texts.h"

namespace veltro {
namespace {

Format pictureFormat(const QString &codec, int height)
{
    Format format;
    format.id = QString::number(height);
    format.ext = QStringLiteral("mp4");
    format.resolution = QStringLiteral("%1x%2").arg(height * 16 / 9).arg(height);
    format.fps = height > 480 ? 60 : 30;
    format.vcodec = codec;
    format.isVideoOnly = true;
    if (height != 360) {
        format.filesizeBytes = qint64(height) * 123'457;
    }
    return format;
}

Format soundFormat(const QString &ext, const QString &codec)
{
    Format format;
    format.id = codec;
    format.ext = ext;
    format.acodec = codec;
    format.bitrateKbps = 129.5;
    format.filesizeBytes = 3'400'000;
    format.isAudioOnly = true;
    return format;
}

std::vector<Format> formatsOf(const QString &codec)
{
    std::vector<Format> formats;
    for (const int height : {144, 240, 360, 480, 720, 1080, 1440, 2160}) {
        formats.push_back(pictureFormat(codec, height));
    }
    return formats;
}

std::vector<MediaInfo> entries()
{
    std::vector<MediaInfo> all;
    for (int number = 0; number < 40; ++number) {
        MediaInfo entry;
        entry.title = sampleTitles().at(number % sampleTitles().size());
        entry.webpageURL = QUrl(QStringLiteral("https://video.example/%1").arg(number));
        entry.durationSeconds = 61.0 * number;
        all.push_back(entry);
    }
    return all;
}

MediaInfo infoOf(SampleRequest::Page page)
{
    MediaInfo info;
    info.uploader = QStringLiteral("The harbour's archive");
    info.webpageURL = QUrl(QStringLiteral("https://video.example/watch"));
    switch (page) {
    case SampleRequest::Mixed:
        info.formats = formatsOf(QStringLiteral("avc1.640028"));
        info.formats.push_back(pictureFormat(QStringLiteral("vp9"), 4320));
        info.formats.push_back(soundFormat(QStringLiteral("m4a"), QStringLiteral("mp4a.40.2")));
        info.formats.push_back(soundFormat(QStringLiteral("webm"), QStringLiteral("opus")));
        break;
    case SampleRequest::Unplayable:
        info.formats = formatsOf(QStringLiteral("av01.0.08M.08"));
        info.uploader = std::nullopt;
        break;
    case SampleRequest::Formatless:
        break;
    case SampleRequest::Playlist:
        info.playlistEntries = entries();
        [[fallthrough]];
    case SampleRequest::EmptyPlaylist:
        info.isPlaylist = true;
        break;
    }
    return info;
}

}

void SampleRequest::setPage(Page page)
{
    m_page = page;
    Q_EMIT changed();
}

void SampleRequest::setTitle(int title)
{
    m_title = title;
    Q_EMIT changed();
}

QVariant SampleRequest::request() const
{
    MediaInfo info = infoOf(m_page);
    info.title = sampleTitles().at(m_title % sampleTitles().size());
    return QVariant::fromValue(FormatPickRequest{
        QUuid::createUuid(), QUrl(QStringLiteral("https://video.example/watch")), info});
}

}
