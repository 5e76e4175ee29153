// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once
#include <QUrl>

#include <optional>

namespace veltro {

// What a saved file tells of itself. These block; any thread but the main one.

/// The size of the file; 0 when it cannot be read.
[[nodiscard]] qint64 fileSize(const QUrl &media);

/// The picture that yt-dlp has left beside the media, or else one made of its first second, which
/// is then written there. Nothing when neither works.
[[nodiscard]] std::optional<QUrl> findOrMakeThumbnail(const QUrl &media);

[[nodiscard]] std::optional<double> mediaDuration(const QUrl &media);

}
