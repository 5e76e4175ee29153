// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/picker/playlist_entries_model.h"

#include "ui/pictures/web_picture.h"

#include <QStringList>

namespace veltro {

QString clockText(std::optional<double> seconds)
{
    constexpr double longest = 1000.0 * 3600;
    if (!seconds || !(*seconds >= 0 && *seconds < longest)) {
        return {};
    }
    const int whole = static_cast<int>(*seconds);
    const QString tail = QStringLiteral("%1").arg(whole % 60, 2, 10, QLatin1Char('0'));
    const int minutes = whole / 60;
    if (minutes < 60) {
        return QStringLiteral("%1:%2").arg(minutes).arg(tail);
    }
    return QStringLiteral("%1:%2:%3")
        .arg(minutes / 60)
        .arg(minutes % 60, 2, 10, QLatin1Char('0'))
        .arg(tail);
}

void PlaylistEntriesModel::setEntries(const std::vector<MediaInfo> &entries)
{
    beginResetModel();
    m_entries.clear();
    for (const MediaInfo &entry : entries) {
        if (entry.webpageURL && isWebAddress(*entry.webpageURL)) {
            m_entries.push_back({entry.title, *entry.webpageURL, entry.durationSeconds});
        }
    }
    endResetModel();
    Q_EMIT countChanged();
}

QString PlaylistEntriesModel::address(int row) const
{
    // Encoded, so that no blank cuts it in two.
    return row >= 0 && row < count()
               ? QString::fromLatin1(m_entries[static_cast<std::size_t>(row)].address.toEncoded())
               : QString();
}

QString PlaylistEntriesModel::addresses() const
{
    QStringList lines;
    lines.reserve(count());
    for (int row = 0; row < count(); ++row) {
        lines << address(row);
    }
    return lines.join(u'\n');
}

int PlaylistEntriesModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : count();
}

QVariant PlaylistEntriesModel::data(const QModelIndex &index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid)) {
        return {};
    }
    const Entry &entry = m_entries[static_cast<std::size_t>(index.row())];
    switch (role) {
    case title:
    case Qt::DisplayRole:
        return entry.title;
    case host:
        return entry.address.host();
    case duration:
        return clockText(entry.durationSeconds);
    default:
        return {};
    }
}

QHash<int, QByteArray> PlaylistEntriesModel::roleNames() const
{
    return {{title, "title"}, {host, "host"}, {duration, "duration"}};
}

}
