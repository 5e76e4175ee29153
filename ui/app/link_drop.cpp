// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/app/link_drop.h"

#include "coordination/page_links.h"

#include <algorithm>

namespace veltro {
namespace {

// A longer text is a document, not a link.
constexpr qsizetype longestLink = 64 * 1024;

}

QUrl LinkDrop::firstLink(const QList<QUrl> &addresses, const QString &text)
{
    const auto first = std::find_if(addresses.begin(), addresses.end(), [](const QUrl &address) {
        return address.isValid() && !address.scheme().isEmpty();
    });
    if (first != addresses.end()) {
        return *first;
    }
    return text.size() > longestLink ? QUrl() : pageLink(text).value_or(QUrl());
}

}
