// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/library/local_picture.h"

#include <QFileInfo>
#include <QImageReader>
#include <QPainter>
#include <QPainterPath>

#include <algorithm>

namespace veltro {
namespace {

constexpr qint64 mostPicturePixels = 40'000'000;
constexpr qint64 mostPictureBytes = 64LL * 1024 * 1024;
constexpr int longestPictureSide = 16'384;

// Of what thumbnails come in; drawings that are programs of a kind are not among them.
bool isThumbnailFormat(const QByteArray &format)
{
    return format == "jpeg" || format == "png" || format == "webp" || format == "gif";
}

bool isThumbnailSize(QSize size)
{
    return !size.isEmpty() && std::max(size.width(), size.height()) <= longestPictureSide &&
           qint64{size.width()} * size.height() <= mostPicturePixels;
}

QImage fillFrame(const QImage &picture, const PictureFrame &frame)
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

QImage localPicture(const QString &file, const PictureFrame &frame)
{
    const QFileInfo information(file);
    // A pipe under that name would never answer.
    if (frame.pixels.isEmpty() || !information.isFile() || information.size() > mostPictureBytes) {
        return {};
    }
    QImageReader reader(file);
    reader.setDecideFormatFromContent(true);
    reader.setAutoTransform(true);
    const QSize size = reader.size();
    if (!isThumbnailFormat(reader.format()) || !isThumbnailSize(size)) {
        return {};
    }
    // Twice what is shown keeps edges crisp, turned or not; decoders skip the detail beyond.
    const int side = 2 * std::max(frame.pixels.width(), frame.pixels.height());
    if (std::min(size.width(), size.height()) > side) {
        reader.setScaledSize(size.scaled(side, side, Qt::KeepAspectRatioByExpanding));
    }
    const QImage picture = reader.read();
    return picture.isNull() ? QImage() : fillFrame(picture, frame);
}

}
