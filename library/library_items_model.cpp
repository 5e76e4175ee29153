// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "library/library_items_model.h"

#include "library/model_container.h"
#include "platform/serial_queue.h"

#include <QThread>

#include <algorithm>
#include <deque>
#include <mutex>
#include <utility>

namespace veltro {
namespace {

/// To let go of a hundred thousand rows takes longer than a frame should wait.
void letGo(LibraryRows rows)
{
    auto shared = std::make_shared<LibraryRows>(std::move(rows));
    storeQueue().async([shared = std::move(shared)]() mutable { shared.reset(); });
}

}

/// Lets updates in for as long as the model is there. Any thread.
struct LibraryItemsModel::Door : std::enable_shared_from_this<LibraryItemsModel::Door> {
    std::mutex lock;
    LibraryItemsModel *model = nullptr; // guarded by lock; null once the model has turned away
    std::deque<LibraryUpdate> updates;  // guarded by lock; each has a call under way

    void pass(LibraryUpdate update)
    {
        const std::lock_guard guard(lock);
        if (model != nullptr) {
            updates.push_back(std::move(update));
            QMetaObject::invokeMethod(
                model, [door = shared_from_this(), receiver = model] { door->enter(*receiver); },
                Qt::QueuedConnection);
        }
    }
    /// On the model's thread.
    void enter(LibraryItemsModel &receiver)
    {
        LibraryUpdate update = next();
        const auto isOpen = [&] { return receiver.m_door.get() == this; };
        if (isOpen()) {
            receiver.take(update);
        }
        // Whoever heard of that may have given the list another container.
        if (isOpen() && update.hasMore) {
            receiver.m_query->goOn();
        }
    }
    LibraryUpdate next()
    {
        const std::lock_guard guard(lock);
        LibraryUpdate first = std::move(updates.front());
        updates.pop_front();
        return first;
    }
};

LibraryItemsModel::LibraryItemsModel(QObject *parent) : QAbstractListModel(parent) {}

LibraryItemsModel::~LibraryItemsModel()
{
    turnAway();
    letGo(std::move(m_rows));
}

void LibraryItemsModel::setContainer(std::shared_ptr<ModelContainer> container)
{
    Q_ASSERT(QThread::currentThread() == thread());
    end();
    m_container = std::move(container);
    begin();
}

void LibraryItemsModel::begin()
{
    if (!m_container) {
        return;
    }
    m_door = std::make_shared<Door>();
    m_door->model = this;
    m_query = std::make_shared<LibraryQuery>(
        m_container, static_cast<std::size_t>(std::max(0, m_limit)),
        [door = m_door](LibraryUpdate update) { door->pass(std::move(update)); });
    if (!m_search.isEmpty()) {
        m_query->search(m_search, m_searchNumber);
    }
    m_query->start();
}

void LibraryItemsModel::turnAway()
{
    if (!m_query) {
        return;
    }
    {
        const std::lock_guard guard(m_door->lock);
        m_door->model = nullptr;
    }
    m_door.reset();
    m_query->stop();
    m_query.reset();
}

void LibraryItemsModel::end()
{
    turnAway();
    LibraryUpdate nothing;
    nothing.all.emplace();
    nothing.search = m_answered;
    take(nothing);
}

int LibraryItemsModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : count();
}

QHash<int, QByteArray> LibraryItemsModel::roleNames() const
{
    return {{itemIdRole, "itemId"},
            {titleRole, "title"},
            {uploaderRole, "uploader"},
            {hostRole, "host"},
            {sourceUrlRole, "sourceUrl"},
            {localFileUrlRole, "localFileUrl"},
            {thumbnailFileUrlRole, "thumbnailFileUrl"},
            {durationSecondsRole, "durationSeconds"},
            {fileSizeBytesRole, "fileSizeBytes"},
            {completedAtRole, "completedAt"},
            {formatLabelRole, "formatLabel"}};
}

QVariant LibraryItemsModel::data(const QModelIndex &index, int role) const
{
    return checkIndex(index, CheckIndexOption::IndexIsValid)
               ? value(*m_rows.at(static_cast<std::size_t>(index.row())), role)
               : QVariant();
}

QVariant LibraryItemsModel::value(const LibraryRow &row, int role) const
{
    using Text = LibraryRow::Text;
    switch (role) {
    case itemIdRole:
        return row.id();
    case Qt::DisplayRole:
    case titleRole:
        return row.text(Text::title);
    case uploaderRole:
        return row.text(Text::uploader);
    case hostRole:
        return row.url(Text::sourceURL).host();
    case sourceUrlRole:
        return row.url(Text::sourceURL);
    case localFileUrlRole:
        return row.url(Text::localFileURL);
    case thumbnailFileUrlRole:
        return row.url(Text::thumbnailFileURL);
    case durationSecondsRole:
        return row.durationSeconds() ? QVariant(*row.durationSeconds()) : QVariant();
    case fileSizeBytesRole:
        return row.fileSizeBytes();
    case completedAtRole:
        return row.completedAt() ? QVariant(*row.completedAt()) : QVariant();
    case formatLabelRole:
        return row.text(Text::formatLabel);
    default:
        return {};
    }
}

void LibraryItemsModel::setSearch(const QString &text)
{
    if (text == m_search) {
        return;
    }
    m_search = text;
    ++m_searchNumber;
    if (m_query) {
        m_query->search(text, m_searchNumber);
    }
    Q_EMIT searchChanged();
}

void LibraryItemsModel::setLimit(int limit)
{
    if (limit == m_limit) {
        return;
    }
    end();
    m_limit = limit;
    begin();
    Q_EMIT limitChanged();
}

QUuid LibraryItemsModel::idAt(int row) const
{
    return row >= 0 && row < count() ? m_rows[static_cast<std::size_t>(row)]->id() : QUuid();
}

int LibraryItemsModel::rowOf(const QUuid &id) const
{
    const auto found = std::find_if(m_rows.begin(), m_rows.end(),
                                    [&id](const auto &row) { return row->id() == id; });
    return found == m_rows.end() ? -1 : static_cast<int>(found - m_rows.begin());
}

std::optional<DownloadItem> LibraryItemsModel::item(const QUuid &id) const
{
    const int row = rowOf(id);
    return row < 0 ? std::nullopt : std::optional(itemAt(row));
}

void LibraryItemsModel::take(LibraryUpdate &update)
{
    const int oldCount = count();
    if (update.all) {
        replaceAll(*update.all);
    }
    for (const RowChange &change : update.changes) {
        apply(change);
    }
    if (count() != oldCount) {
        Q_EMIT countChanged();
    }
    if (std::exchange(m_total, static_cast<int>(update.total)) != m_total) {
        Q_EMIT totalChanged();
    }
    if (std::exchange(m_isLoaded, update.isLoaded) != m_isLoaded) {
        Q_EMIT isLoadedChanged();
    }
    if (std::exchange(m_answered, update.search) != m_answered && m_answered == m_searchNumber) {
        Q_EMIT searchAnswered();
    }
}

void LibraryItemsModel::replaceAll(LibraryRows &rows)
{
    beginResetModel();
    LibraryRows old = std::exchange(m_rows, std::move(rows));
    endResetModel();
    letGo(std::move(old));
}

void LibraryItemsModel::apply(const RowChange &change)
{
    const int first = static_cast<int>(change.first);
    const int last = first + static_cast<int>(change.count) - 1;
    switch (change.kind) {
    case RowChange::Kind::insert:
        beginInsertRows({}, first, last);
        applyChange(change, m_rows);
        endInsertRows();
        break;
    case RowChange::Kind::remove:
        beginRemoveRows({}, first, last);
        applyChange(change, m_rows);
        endRemoveRows();
        break;
    case RowChange::Kind::replace:
        applyChange(change, m_rows);
        Q_EMIT dataChanged(index(first), index(last));
        break;
    }
}

}
