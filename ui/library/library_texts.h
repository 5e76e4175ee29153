// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once
#include <QString>

#include <optional>

namespace veltro {

struct DownloadItem;

// What the library's screen says. Any thread.

/// "3 items selected"
[[nodiscard]] QString selectedCountText(int count);
/// "Delete 3 items"
[[nodiscard]] QString deleteCountText(int count);
/// The line below a title in the player's column: uploader, length, format, size, what of it is
/// known.
[[nodiscard]] QString detailsText(const DownloadItem &item);
/// What a screen reader says of a tile.
[[nodiscard]] QString spokenTile(const QString &title, const QString &uploader,
                                 std::optional<double> durationSeconds);

}
