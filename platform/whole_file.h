// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once
#include <QByteArray>
#include <QFileDevice>
#include <QString>

#include <optional>

namespace veltro {

/// Writes a file such that nobody ever sees a part of it under its name: it is there as a whole, on
/// the disk, or as it was before. With permissions given, nobody sees it under wider ones either.
/// @returns why it could not be written, or nothing
[[nodiscard]] std::optional<QString>
writeWholeFile(const QString &path, const QByteArray &content,
               std::optional<QFileDevice::Permissions> permissions = std::nullopt);

}
