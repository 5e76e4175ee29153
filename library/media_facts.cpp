// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "library/media_facts.h"

#include "platform/ffmpeg/media_tools.h"
#include "platform/log.h"
#include "platform/whole_file.h"

#include <QFile>
#include <QFileInfo>

#include <filesystem>
#include <vector>

namespace veltro {
namespace {

constexpr double thumbnailSecond = 1.0;
constexpr int thumbnailEdge = 800; // pixels, of either side at most
constexpr double thumbnailQuality = 0.7;

std::filesystem::path pathOf(const QUrl &file)
{
    return QFile::encodeName(file.toLocalFile()).toStdString();
}

QString besideWithExtension(const QUrl &media, const QString &extension)
{
    const QFileInfo file(media.toLocalFile());
    // A name that only begins with a dot has no extension.
    const QString stem =
        file.completeBaseName().isEmpty() ? file.fileName() : file.completeBaseName();
    return file.path() + u'/' + stem + u'.' + extension;
}

/// Nothing when there are no media functions, which is logged: the item is recorded all the same.
template <typename Work>
auto withTools(Work work) -> decltype(work(ffmpeg::mediaTools()))
{
    try {
        return work(ffmpeg::mediaTools());
    } catch (const ffmpeg::MediaToolsMissing &error) {
        logLine(LogTag::engine, error.what());
        return std::nullopt;
    }
}

void makeThumbnail(const QUrl &media, const QString &picture)
{
    const auto jpeg = withTools([&media](ffmpeg::MediaTools &tools) {
        return tools.still(pathOf(media), thumbnailSecond, thumbnailEdge, thumbnailEdge,
                           thumbnailQuality);
    });
    if (!jpeg) {
        return;
    }
    const QByteArray content(reinterpret_cast<const char *>(jpeg->data()),
                             static_cast<qsizetype>(jpeg->size()));
    if (const std::optional<QString> reason = writeWholeFile(picture, content)) {
        logLine(LogTag::engine, "A thumbnail could not be written: " + reason->toStdString());
    }
}

}

qint64 fileSize(const QUrl &media)
{
    const QFileInfo file(media.toLocalFile());
    return file.exists() ? file.size() : 0;
}

std::optional<QUrl> findOrMakeThumbnail(const QUrl &media)
{
    for (const char *const extension : {"jpg", "jpeg", "png", "webp"}) {
        const QString picture = besideWithExtension(media, QLatin1String(extension));
        if (QFile::exists(picture)) {
            return QUrl::fromLocalFile(picture);
        }
    }
    const QString picture = besideWithExtension(media, QStringLiteral("jpg"));
    makeThumbnail(media, picture);
    return QFile::exists(picture) ? std::optional(QUrl::fromLocalFile(picture)) : std::nullopt;
}

std::optional<double> mediaDuration(const QUrl &media)
{
    return withTools([&media](ffmpeg::MediaTools &tools) { return tools.duration(pathOf(media)); });
}

}
