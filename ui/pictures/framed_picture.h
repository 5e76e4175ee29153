// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once
#include <QImage>
#include <QSize>
#include <QString>

class QIODevice;

namespace veltro {

/// How a picture is cut to fill a frame.
struct PictureFrame {
    QSize pixels;      ///< of the screen
    double radius = 0; ///< of the corners, in the same pixels
    bool operator==(const PictureFrame &) const = default;
};

// Pictures that nobody vouches for, from pages and from files. Null for what is no picture of a
// kind that pages use, and for one that is larger than any thumbnail: its header is believed before
// anything of it is decoded. Any thread; these block.

/// Decodes a picture so that it fills the frame; what reaches beyond is cut on both sides alike.
/// Of one that moves it is the first picture.
[[nodiscard]] QImage framedPicture(QIODevice &encoded, const PictureFrame &frame);
/// The same for a local file.
[[nodiscard]] QImage framedFile(const QString &path, const PictureFrame &frame);

}
