// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "engine/media/dictionary_reader.h"
#include "engine/media/media_info.h"

#include <QUuid>

namespace veltro {
namespace {

std::optional<QString> resolutionOf(const DictionaryReader &format)
{
    if (const std::optional<QString> resolution = format.text("resolution")) {
        return resolution;
    }
    const std::optional<qint64> height = format.integer("height");
    return height ? std::optional(QString::number(*height) + u'p') : std::nullopt;
}

std::optional<qint64> sizeOfFormat(const DictionaryReader &format)
{
    const std::optional<qint64> exact = format.integer("filesize");
    return exact ? exact : format.integer("filesize_approx");
}

/// An empty video codec counts as no video, an empty audio codec as unknown.
bool carriesOnlyAudio(const Format &format)
{
    return format.vcodec && (format.vcodec->isEmpty() || *format.vcodec == QLatin1String("none")) &&
           format.acodec && *format.acodec != QLatin1String("none");
}

bool carriesOnlyVideo(const Format &format)
{
    return format.acodec == QStringLiteral("none") && format.vcodec &&
           *format.vcodec != QLatin1String("none");
}

}

Format Format::parse(const PythonObject &dictionary)
{
    const DictionaryReader reader(dictionary);
    Format format;
    format.id = reader.presentText("format_id")
                    .value_or(QUuid::createUuid().toString(QUuid::WithoutBraces));
    format.ext = reader.presentText("ext").value_or(QStringLiteral("mp4"));
    format.vcodec = reader.text("vcodec");
    format.acodec = reader.text("acodec");
    format.isAudioOnly = carriesOnlyAudio(format);
    format.isVideoOnly = carriesOnlyVideo(format);
    format.resolution = resolutionOf(reader);
    format.fps = reader.number("fps");
    format.bitrateKbps = reader.number("tbr");
    format.filesizeBytes = sizeOfFormat(reader);
    format.note = reader.text("format_note");
    return format;
}

}
