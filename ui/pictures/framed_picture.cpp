// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/pictures/framed_picture.h"

#include <QFile>
#include <QFileInfo>
#include <QImageReader>
#include <QPainter>
#include <QPainterPath>

#include <algorithm>
#include <array>

namespace veltro {
namespace {

constexpr qint64 mostPixels = 32'000'000;
constexpr qint64 mostFileBytes = 64LL * 1024 * 1024;
constexpr int longestSide = 16'000;

bool isThumbnailKind(const QByteArray &format)
{
    // Vector pictures are left out: theirs is a language of its own.
    static constexpr std::array<const char *, 6> kinds{"jpeg", "jpg", "png", "webp", "gif", "bmp"};
    return std::any_of(kinds.begin(), kinds.end(),
                       [&](const char *kind) { return format == kind; });
}

bool isThumbnailSize(QSize size)
{
    return !size.isEmpty() && std::max(size.width(), size.height()) <= longestSide &&
           qint64{size.width()} * size.height() <= mostPixels;
}

QImage fill(const PictureFrame &frame, const QImage &picture)
{
    QImage filled(frame.pixels, QImage::Format_ARGB32_Premultiplied);
    filled.fill(Qt::transparent);
    QPainter painter(&filled);
    painter.setRenderHints(QPainter::Antialiasing | QPainter::SmoothPixmapTransform);
    const QRectF area(QPointF(), QSizeF(frame.pixels));
    const QSizeF size = QSizeF(picture.size()).scaled(area.size(), Qt::KeepAspectRatioByExpanding);
    QRectF target(QPointF(), size);
    target.moveCenter(area.center());
    QPainterPath outline;
    outline.addRoundedRect(area, frame.radius, frame.radius);
    painter.setClipPath(outline);
    painter.drawImage(target, picture);
    return filled;
}

}

QImage framedPicture(QIODevice &encoded, const PictureFrame &frame)
{
    if (frame.pixels.isEmpty()) {
        return {};
    }
    QImageReader reader(&encoded);
    reader.setDecideFormatFromContent(true);
    reader.setAutoTransform(true);
    const QSize size = reader.size();
    if (!isThumbnailKind(reader.format()) || !isThumbnailSize(size)) {
        return {};
    }
    // Decoders that can, skip detail that would not be seen; twice the size keeps edges crisp, and
    // the shorter side of a turned picture is covered too.
    const int side = 2 * std::max(frame.pixels.width(), frame.pixels.height());
    if (std::min(size.width(), size.height()) > side) {
        reader.setScaledSize(size.scaled(side, side, Qt::KeepAspectRatioByExpanding));
    }
    const QImage picture = reader.read();
    return picture.isNull() ? QImage() : fill(frame, picture);
}

QImage framedFile(const QString &path, const PictureFrame &frame)
{
    const QFileInfo information(path);
    // A pipe under that name would never answer.
    if (!information.isFile() || information.size() > mostFileBytes) {
        return {};
    }
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? framedPicture(file, frame) : QImage();
}

}
