// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once
#include <QString>
#include <QUrl>
#include <QUuid>

#include <optional>

namespace veltro {

// Addresses that others hand to the program. Its own scheme has two forms:
//   veltro://open?url=ADDRESS   save the page; the first item "url" counts, whatever the host
//   veltro://item/UUID          show that entry of the library
// Any thread.

/// What was handed over (an argument, a dropped or opened address) as an address of the program's
/// scheme. A plain web link is wrapped whole, so that nothing of its own query is taken for ours.
/// Nothing for what is neither.
[[nodiscard]] std::optional<QUrl> programAddress(const QString &handedOver);

[[nodiscard]] QUrl libraryItemAddress(const QString &identifier);
/// The entry of the library that an address of the program's scheme names.
[[nodiscard]] std::optional<QUuid> libraryItemOf(const QUrl &address);

}
