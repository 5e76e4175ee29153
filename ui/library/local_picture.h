// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once
#include <QImage>
#include <QSize>
#include <QString>

namespace veltro {

/// How a picture is cut to fill a frame.
struct PictureFrame {
    QSize pixels;      ///< of the screen
    double radius = 0; ///< of the corners, in the same pixels
    bool operator==(const PictureFrame &) const = default;
};

/// Reads a local picture so that it fills the frame; what reaches beyond is cut on both sides
/// alike. Null for what is no picture, and for one that is larger than any thumbnail: its header is
/// believed before anything of it is decoded. Any thread; blocks.
[[nodiscard]] QImage localPicture(const QString &file, const PictureFrame &frame);

}
