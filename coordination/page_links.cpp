// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "coordination/page_links.h"

#include <QUrlQuery>

#include <algorithm>

namespace veltro {

std::optional<QUrl> pageLink(const QString &text)
{
    const QString word = text.trimmed();
    const bool isOneWord =
        std::none_of(word.begin(), word.end(), [](QChar letter) { return letter.isSpace(); });
    const QUrl url(word);
    const bool isOfTheWeb =
        url.scheme() == QStringLiteral("http") || url.scheme() == QStringLiteral("https");
    return isOneWord && url.isValid() && isOfTheWeb ? std::optional(url) : std::nullopt;
}

QList<QUrl> pageLinks(const QString &text)
{
    QList<QUrl> links;
    for (const QString &word : text.simplified().split(u' ', Qt::SkipEmptyParts)) {
        if (const std::optional<QUrl> link = pageLink(word)) {
            links.append(*link);
        }
    }
    return links;
}

std::optional<QUrl> linkInRequest(const QUrl &request)
{
    const QUrlQuery query(request);
    const QUrl link(query.queryItemValue(QStringLiteral("url"), QUrl::FullyDecoded));
    return link.isValid() && !link.isEmpty() ? std::optional(link) : std::nullopt;
}

}
