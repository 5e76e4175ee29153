// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once
#include <QString>
#include <QUrl>

namespace veltro {

/// The request, in the program's own scheme, that opens an address which the program was given:
/// one of its own stays as it is, any other is wrapped whole and percent-encoded, so that an item
/// "url" of the page's own query is not taken for it. Any thread.
[[nodiscard]] QUrl openRequest(const QString &address);

}
