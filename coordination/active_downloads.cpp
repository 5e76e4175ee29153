// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "coordination/active_downloads.h"

#include <algorithm>
#include <utility>

namespace veltro {

int ActiveDownloads::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : count();
}

QVariant ActiveDownloads::data(const QModelIndex &index, int role) const
{
    if (role != recordRole || !checkIndex(index, CheckIndexOption::IndexIsValid)) {
        return {};
    }
    return QVariant::fromValue(record(index.row()).get());
}

QHash<int, QByteArray> ActiveDownloads::roleNames() const
{
    return {{recordRole, "record"}};
}

int ActiveDownloads::activeCount() const
{
    return countOf(ItemState::Kind::queued) + countOf(ItemState::Kind::running) +
           countOf(ItemState::Kind::postProcessing);
}

int ActiveDownloads::finishedCount() const
{
    return countOf(ItemState::Kind::done) + countOf(ItemState::Kind::failed) +
           countOf(ItemState::Kind::cancelled);
}

ActiveDownloads::Record ActiveDownloads::find(const QUuid &id) const
{
    return m_entries.value(id).record;
}

int ActiveDownloads::rowOf(const QUuid &id) const
{
    const auto row = std::find_if(m_rows.begin(), m_rows.end(),
                                  [&id](const Record &record) { return record->id() == id; });
    return row == m_rows.end() ? -1 : static_cast<int>(row - m_rows.begin());
}

void ActiveDownloads::append(Record record)
{
    Q_ASSERT(!contains(record->id()));
    connect(record.get(), &DownloadProgressState::stateChanged, this,
            [this, id = record->id()] { followState(id); });
    const ItemState::Kind kind = record->state().kind;
    beginInsertRows({}, count(), count());
    m_entries.insert(record->id(), {record, kind});
    m_rows.push_back(std::move(record));
    endInsertRows();
    Q_EMIT countChanged();
    shift(std::nullopt, kind);
}

void ActiveDownloads::remove(const QUuid &id)
{
    if (contains(id)) {
        const int row = rowOf(id);
        removeRun(row, row);
    }
}

void ActiveDownloads::removeFinished()
{
    const auto isFinal = [this](int row) { return record(row)->state().isFinal(); };
    for (int last = count() - 1; last >= 0; --last) {
        if (!isFinal(last)) {
            continue;
        }
        int first = last;
        while (first > 0 && isFinal(first - 1)) {
            --first;
        }
        removeRun(first, last);
        last = first;
    }
}

void ActiveDownloads::removeRun(int first, int last)
{
    const auto begin = m_rows.begin() + first;
    const auto end = m_rows.begin() + last + 1;
    // The records outlive the announcement: a view may still look at one while it lets go.
    const std::vector<Record> leaving(begin, end);
    const Counts before = counts();
    beginRemoveRows({}, first, last);
    m_rows.erase(begin, end);
    for (const Record &record : leaving) {
        disconnect(record.get(), nullptr, this, nullptr);
        --m_kindCounts.at(static_cast<std::size_t>(m_entries.take(record->id()).counted));
    }
    endRemoveRows();
    Q_EMIT countChanged();
    announce(before);
}

void ActiveDownloads::followState(const QUuid &id)
{
    Entry &entry = m_entries[id];
    const ItemState::Kind now = entry.record->state().kind;
    shift(std::exchange(entry.counted, now), now);
}

void ActiveDownloads::shift(std::optional<ItemState::Kind> from, std::optional<ItemState::Kind> to)
{
    const Counts before = counts();
    if (from) {
        --m_kindCounts.at(static_cast<std::size_t>(*from));
    }
    if (to) {
        ++m_kindCounts.at(static_cast<std::size_t>(*to));
    }
    announce(before);
}

ActiveDownloads::Counts ActiveDownloads::counts() const
{
    return {activeCount(), queuedCount(), doneCount(), finishedCount()};
}

void ActiveDownloads::announce(const Counts &before)
{
    const Counts now = counts();
    if (now.active != before.active) {
        Q_EMIT activeCountChanged();
    }
    if (now.queued != before.queued) {
        Q_EMIT queuedCountChanged();
    }
    if (now.done != before.done) {
        Q_EMIT doneCountChanged();
    }
    if (now.finished != before.finished) {
        Q_EMIT finishedCountChanged();
    }
}

}
