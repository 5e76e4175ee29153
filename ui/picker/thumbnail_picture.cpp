// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/picker/thumbnail_picture.h"

#include <QBuffer>
#include <QImageReader>
#include <QPainter>
#include <QPainterPath>

#include <algorithm>
#include <array>

namespace veltro {
namespace {

constexpr qint64 largestPixelCount = 32'000'000;
constexpr int largestSide = 16'000;

bool isPictureOfThePage(const QByteArray &format)
{
    // Vector pictures are left out: theirs is a language of its own.
    static constexpr std::array<const char *, 6> kinds{"jpeg", "png", "webp", "gif", "bmp", "jpg"};
    return std::any_of(kinds.begin(), kinds.end(),
                       [&](const char *kind) { return format == kind; });
}

bool isReasonable(QSize size)
{
    return !size.isEmpty() && size.width() <= largestSide && size.height() <= largestSide &&
           qint64(size.width()) * size.height() <= largestPixelCount;
}

QImage cutToShape(const QImage &picture, const ThumbnailShape &shape)
{
    QImage result(shape.pixels, QImage::Format_ARGB32_Premultiplied);
    result.fill(Qt::transparent);
    QPainter painter(&result);
    painter.setRenderHints(QPainter::Antialiasing | QPainter::SmoothPixmapTransform);
    QPainterPath outline;
    outline.addRoundedRect(QRectF(QPointF(), shape.pixels), shape.radius, shape.radius);
    painter.setClipPath(outline);
    const QSizeF size = QSizeF(picture.size()).scaled(shape.pixels, Qt::KeepAspectRatioByExpanding);
    painter.drawImage(QRectF((shape.pixels.width() - size.width()) / 2,
                             (shape.pixels.height() - size.height()) / 2, size.width(),
                             size.height()),
                      picture);
    return result;
}

}

QImage thumbnailPicture(const QByteArray &data, const ThumbnailShape &shape)
{
    if (shape.pixels.isEmpty()) {
        return {};
    }
    QBuffer buffer;
    buffer.setData(data);
    buffer.open(QIODevice::ReadOnly);
    QImageReader reader(&buffer);
    reader.setDecideFormatFromContent(true);
    reader.setAutoTransform(true);
    const QSize size = reader.size();
    if (!isPictureOfThePage(reader.format()) || !isReasonable(size)) {
        return {};
    }
    // Decoders that can, skip detail that would not be seen; twice the size keeps edges crisp, and
    // the shorter side of a turned picture is covered too.
    const int side = 2 * std::max(shape.pixels.width(), shape.pixels.height());
    if (std::min(size.width(), size.height()) > side) {
        reader.setScaledSize(size.scaled(side, side, Qt::KeepAspectRatioByExpanding));
    }
    const QImage picture = reader.read();
    return picture.isNull() ? QImage() : cutToShape(picture, shape);
}

}
