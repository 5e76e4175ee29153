// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once
#include <QList>
#include <QString>
#include <QUrl>

#include <optional>

namespace veltro {

// Addresses of web pages in what people paste. Pure; any thread.

/// The address that the text is, blanks around it aside; nothing unless it is one of http or https.
[[nodiscard]] std::optional<QUrl> pageLink(const QString &text);

/// The addresses among the words of the text, in order; the same one twice stays twice.
[[nodiscard]] QList<QUrl> pageLinks(const QString &text);

/// The address that a request to this program carries in its first item named "url"; nothing when
/// there is none. Of any scheme: what cannot be saved is refused by the engine, with a reason.
[[nodiscard]] std::optional<QUrl> linkInRequest(const QUrl &request);

}
