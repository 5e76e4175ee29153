// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once
#include "coordination/download_progress_state.h"

#include <QAbstractListModel>
#include <QHash>

#include <array>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

namespace veltro {

/// The downloads of this session that have not been removed, oldest first. Changes row by row;
/// the counts follow the records' states without looking at the rows. Main thread only.
class ActiveDownloads : public QAbstractListModel {
    Q_OBJECT
    Q_PROPERTY(int count READ count NOTIFY countChanged)
    Q_PROPERTY(int activeCount READ activeCount NOTIFY activeCountChanged)
    Q_PROPERTY(int queuedCount READ queuedCount NOTIFY queuedCountChanged)
    Q_PROPERTY(int doneCount READ doneCount NOTIFY doneCountChanged)
    Q_PROPERTY(int finishedCount READ finishedCount NOTIFY finishedCountChanged)
public:
    using Record = std::shared_ptr<DownloadProgressState>;

    enum Role {
        recordRole = Qt::UserRole, ///< DownloadProgressState *, valid while the row is there
    };

    using QAbstractListModel::QAbstractListModel;

    [[nodiscard]] int rowCount(const QModelIndex &parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex &index, int role) const override;
    [[nodiscard]] QHash<int, QByteArray> roleNames() const override;

    [[nodiscard]] int count() const { return static_cast<int>(m_rows.size()); }
    /// Queued, running or in post-processing.
    [[nodiscard]] int activeCount() const;
    [[nodiscard]] int queuedCount() const { return countOf(ItemState::Kind::queued); }
    [[nodiscard]] int doneCount() const { return countOf(ItemState::Kind::done); }
    /// Done, failed or cancelled.
    [[nodiscard]] int finishedCount() const;

    /// REQUIRES: a row of the model.
    [[nodiscard]] const Record &record(int row) const { return m_rows.at(std::size_t(row)); }
    /// Nothing when no row has this id.
    [[nodiscard]] Record find(const QUuid &id) const;
    [[nodiscard]] bool contains(const QUuid &id) const { return m_entries.contains(id); }
    /// -1 when no row has this id.
    [[nodiscard]] int rowOf(const QUuid &id) const;

    /// REQUIRES: no row has the record's id.
    void append(Record record);
    void remove(const QUuid &id);
    void removeFinished();

Q_SIGNALS:
    void countChanged();
    void activeCountChanged();
    void queuedCountChanged();
    void doneCountChanged();
    void finishedCountChanged();

private:
    struct Entry {
        Record record;
        ItemState::Kind counted = ItemState::Kind::queued;
    };
    struct Counts {
        int active = 0;
        int queued = 0;
        int done = 0;
        int finished = 0;
    };

    [[nodiscard]] int countOf(ItemState::Kind kind) const
    {
        return m_kindCounts.at(static_cast<std::size_t>(kind));
    }
    [[nodiscard]] Counts counts() const;
    void followState(const QUuid &id);
    void removeRun(int first, int last);
    void shift(std::optional<ItemState::Kind> from, std::optional<ItemState::Kind> to);
    void announce(const Counts &before);

    std::vector<Record> m_rows;
    QHash<QUuid, Entry> m_entries;        // the same records by id, and how each is counted
    std::array<int, 6> m_kindCounts = {}; // by ItemState::Kind
};

}
