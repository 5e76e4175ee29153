// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once
#include <QByteArray>
#include <QString>

#include <optional>

namespace veltro {

// How cookie files are written. Until it is whole and on the disk, a file has a passing name that
// no cookie file has; a lock on the folder tells what is being written from what a process that
// was killed has left. Any thread; may wait for another process that writes.

/// Replaces the cookie file as a whole, and lets nobody but its owner read it.
/// @returns why it could not be written, or nothing
[[nodiscard]] std::optional<QString> writeCookieFile(const QString &path,
                                                     const QByteArray &content);

/// Removes what a killed process has left in the folder, unless another writes there just now.
void removeCookieLeavings(const QString &folder);

/// The same for the user's folder, on the store's queue. Any thread; returns at once.
void removeCookieLeavingsInBackground();

}
