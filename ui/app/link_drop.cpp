// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/app/link_drop.h"

#include "coordination/page_links.h"

#include <algorithm>

namespace veltro {
namespace {

// A longer text is a document, not a link.
constexpr qsizetype longestLink = 64 * 1024;

// What lies on this machine or in the address itself is no page: a file from a file manager or a
// tile of our own library, a picture that is dragged out of a browser.
bool isElsewhere(const QUrl &address)
{
    const QString scheme = address.scheme();
    return address.isValid() && !scheme.isEmpty() && scheme != u"file" && scheme != u"data";
}

}

QUrl LinkDrop::firstLink(const QList<QUrl> &addresses, const QString &text)
{
    const auto first = std::find_if(addresses.begin(), addresses.end(), isElsewhere);
    if (first != addresses.end()) {
        return *first;
    }
    return text.size() > longestLink ? QUrl() : pageLink(text).value_or(QUrl());
}

}
