// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "engine/bridge/python.h"
#include "engine/media/dictionary_reader.h"
#include "engine/media/media_info.h"

#include <QUuid>

#include <stdexcept>

namespace veltro {
namespace {

Subtitle parseTrack(const QString &language, const PythonObject &track, bool isAutomatic)
{
    const DictionaryReader reader(track);
    return {language, reader.presentText("ext").value_or(QStringLiteral("vtt")), reader.url("url"),
            isAutomatic};
}

/// Every track of a dictionary from language to tracks, in its own order.
void appendSubtitles(std::vector<Subtitle> &subtitles, const DictionaryReader &info,
                     const char *key, bool isAutomatic)
{
    const std::optional<PythonObject> languages = info.object(key);
    if (!languages || !isDictionary(*languages)) {
        return;
    }
    for (const PythonObject &languageKey : *languages) {
        const std::optional<std::string> language = languageKey.to<std::string>();
        const std::optional<PythonObject> tracks = languages->checking()[languageKey];
        if (!language || !tracks) {
            continue;
        }
        for (const PythonObject &track : listElements(*tracks)) {
            subtitles.push_back(parseTrack(QString::fromStdString(*language), track, isAutomatic));
        }
    }
}

std::vector<MediaInfo> parseEntries(const DictionaryReader &info)
{
    std::vector<MediaInfo> entries;
    for (const PythonObject &entry : info.list("entries")) {
        try {
            entries.push_back(MediaInfo::parse(entry));
        } catch (const std::exception &) {
            // An entry that cannot be read is left out; the others stand.
        }
    }
    return entries;
}

std::vector<Format> parseFormats(const DictionaryReader &info)
{
    std::vector<Format> formats;
    for (const PythonObject &format : info.list("formats")) {
        formats.push_back(Format::parse(format));
    }
    return formats;
}

}

MediaInfo MediaInfo::parse(const PythonObject &dictionary)
{
    if (!isDictionary(dictionary)) {
        throw std::invalid_argument("The page gave no media information.");
    }
    const DictionaryReader reader(dictionary);
    MediaInfo info;
    info.isPlaylist = reader.text("_type") == QStringLiteral("playlist");
    if (info.isPlaylist) {
        info.playlistEntries = parseEntries(reader);
    } else {
        info.formats = parseFormats(reader);
    }
    appendSubtitles(info.subtitles, reader, "subtitles", false);
    appendSubtitles(info.subtitles, reader, "automatic_captions", true);
    info.id = reader.text("id").value_or(QUuid::createUuid().toString(QUuid::WithoutBraces));
    const QString untitled = QStringLiteral("Untitled");
    info.title = reader.text("title", untitled).value_or(untitled);
    info.uploader = reader.text("uploader");
    info.durationSeconds = reader.number("duration");
    info.thumbnailURL = reader.url("thumbnail");
    info.webpageURL = reader.url("webpage_url");
    info.extractor = reader.text("extractor_key");
    return info;
}

}
