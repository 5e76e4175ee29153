// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/library/library_texts.h"

#include "library/download_item.h"
#include "platform/byte_count.h"
#include "ui/player/player_texts.h"

#include <QCoreApplication>
#include <QStringList>

namespace veltro {
namespace {

QString joined(QStringList parts, const QString &between)
{
    parts.removeAll(QString());
    return parts.join(between);
}

}

QString selectedCountText(int count)
{
    return QCoreApplication::translate("library", "%1 items selected").arg(count);
}

QString deleteCountText(int count)
{
    return QCoreApplication::translate("library", "Delete %1 items").arg(count);
}

QString detailsText(const DownloadItem &item)
{
    return joined(
        {
            item.uploader.value_or(QString()),
            item.durationSeconds ? player::durationText(*item.durationSeconds) : QString(),
            item.formatLabel,
            item.fileSizeBytes > 0 ? fileByteCount(item.fileSizeBytes) : QString(),
        },
        QStringLiteral(" · "));
}

QString spokenTile(const QString &title, const QString &uploader,
                   std::optional<double> durationSeconds)
{
    return joined(
        {
            title,
            uploader,
            durationSeconds ? player::spokenDuration(*durationSeconds) : QString(),
        },
        QStringLiteral(", "));
}

}
