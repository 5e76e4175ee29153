// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "library/search_indexer.h"

#include "library/download_item.h"

namespace veltro {
namespace {

std::optional<QString> describedBy(const DownloadItem &item)
{
    if (item.uploader) {
        return item.uploader;
    }
    const QString host = item.sourceURL.host();
    return host.isEmpty() ? std::nullopt : std::optional(host);
}

}

SearchableItem searchableItem(const DownloadItem &item)
{
    SearchableItem found;
    found.contentType = QStringLiteral("video/*");
    found.title = item.title;
    found.contentDescription = describedBy(item);
    found.durationSeconds = item.durationSeconds;
    found.contentURL = item.localFileURL;
    found.thumbnailURL = item.thumbnailFileURL;
    found.keywords = {QStringLiteral("video"), QStringLiteral("veltro")};
    if (item.uploader) {
        found.keywords += *item.uploader;
    }
    found.uniqueIdentifier = item.id.toString(QUuid::WithoutBraces);
    found.domainIdentifier = QStringLiteral("app.veltro.app.library");
    return found;
}

void indexForSearch(const DownloadItem &item)
{
    SearchIndex::standard().indexItems({searchableItem(item)});
}

}
