// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/library/library_texts.h"

#include "library/download_item.h"
#include "platform/byte_count.h"
#include "ui/player/player_texts.h"

#include <QCoreApplication>
#include <QStringList>

#include <algorithm>

namespace veltro {
namespace {

// What somebody else wrote, kept from turning around what stands beside it on the line.
QString isolated(QString text)
{
    constexpr char16_t firstIsolate = 0x2068;
    constexpr char16_t endOfIsolate = 0x2069;
    const auto turns = [](QChar letter) {
        switch (letter.direction()) {
        case QChar::DirR:
        case QChar::DirAL:
        case QChar::DirLRE:
        case QChar::DirLRO:
        case QChar::DirRLE:
        case QChar::DirRLO:
        case QChar::DirPDF:
        case QChar::DirLRI:
        case QChar::DirRLI:
        case QChar::DirFSI:
        case QChar::DirPDI:
            return true;
        default:
            return false;
        }
    };
    if (std::none_of(text.cbegin(), text.cend(), turns)) {
        return text;
    }
    text.remove(QChar(endOfIsolate)); // it would end ours
    return QChar(firstIsolate) + text + QChar(endOfIsolate);
}

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
            isolated(item.uploader.value_or(QString())),
            item.durationSeconds ? player::durationText(*item.durationSeconds) : QString(),
            isolated(item.formatLabel),
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
