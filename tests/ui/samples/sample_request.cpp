// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/ui/samples/sample_request.h"

#include "tests/ui/samples/sample_texts.h"

using namespace Qt::StringLiterals;

namespace veltro {
namespace {

Format pictureFormat(const QString &codec, int height)
{
    Format format;
    format.id = QString::number(height);
    format.ext = u"mp4"_s;
    format.resolution = u"%1x%2"_s.arg(height * 16 / 9).arg(height);
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
        entry.webpageURL = QUrl(u"https://video.example/%1"_s.arg(number));
        entry.durationSeconds = 61.0 * number;
        all.push_back(entry);
    }
    return all;
}

MediaInfo infoOf(SampleRequest::Page page)
{
    MediaInfo info;
    info.uploader = u"The harbour's archive"_s;
    info.webpageURL = QUrl(u"https://video.example/watch"_s);
    switch (page) {
    case SampleRequest::Mixed:
        info.formats = formatsOf(u"avc1.640028"_s);
        info.formats.push_back(pictureFormat(u"vp9"_s, 4320));
        info.formats.push_back(soundFormat(u"m4a"_s, u"mp4a.40.2"_s));
        info.formats.push_back(soundFormat(u"webm"_s, u"opus"_s));
        break;
    case SampleRequest::Unplayable:
        info.formats = formatsOf(u"av01.0.08M.08"_s);
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

QVariant SampleRequest::request() const
{
    MediaInfo info = infoOf(page);
    info.title = sampleTitles().at(title % sampleTitles().size());
    return QVariant::fromValue(
        FormatPickRequest{QUuid::createUuid(), QUrl(u"https://video.example/watch"_s), info});
}

}
