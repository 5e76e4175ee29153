// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once
#include <QByteArray>
#include <QImage>
#include <QSize>

namespace veltro {

/// How a thumbnail is to be drawn.
struct ThumbnailShape {
    QSize pixels;      ///< of the device
    double radius = 0; ///< of the corners, in the same pixels
    bool operator==(const ThumbnailShape &) const = default;
};

/// Decodes a picture that a page names, so that it fills the shape; what reaches beyond is cut on
/// both sides alike. Null when it is no picture of a kind that pages use, or has more pixels than
/// any thumbnail: its header is believed before a byte of it is decoded. Any thread.
[[nodiscard]] QImage thumbnailPicture(const QByteArray &data, const ThumbnailShape &shape);

}
