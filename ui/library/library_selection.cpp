// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/library/library_selection.h"

#include <QMetaObject>

#include <algorithm>
#include <utility>

namespace veltro {

LibrarySelection::LibrarySelection(const TileRows &rows, QObject *parent)
    : QObject(parent), m_rows(rows)
{}

int LibrarySelection::currentRow() const
{
    return m_current ? m_rows.rowOf(*m_current) : -1;
}

void LibrarySelection::assign(QSet<QUuid> ids)
{
    if (ids != m_ids) {
        m_ids = std::move(ids);
        ++m_revision;
        Q_EMIT changed();
    }
}

void LibrarySelection::standAt(const QUuid &id)
{
    if (m_current != id) {
        m_current = id;
        Q_EMIT currentRowChanged();
    }
}

QSet<QUuid> LibrarySelection::idsBetween(int one, int other) const
{
    const auto [first, last] = std::minmax(one, other);
    QSet<QUuid> ids;
    ids.reserve(last - first + 1);
    for (int row = first; row <= last; ++row) {
        ids.insert(m_rows.idAt(row));
    }
    return ids;
}

void LibrarySelection::click(const QUuid &id, Qt::KeyboardModifiers modifiers)
{
    if (std::exchange(m_didMarquee, false)) {
        return;
    }
    standAt(id);
    if (modifiers.testFlag(Qt::ControlModifier)) {
        QSet<QUuid> ids = m_ids;
        if (!ids.remove(id)) {
            ids.insert(id);
        }
        m_anchor = id;
        assign(std::move(ids));
    } else if (modifiers.testFlag(Qt::ShiftModifier)) {
        selectFromAnchor(m_rows.rowOf(id));
    } else {
        choose(id);
    }
}

void LibrarySelection::choose(const QUuid &id)
{
    standAt(id);
    m_anchor = id;
    assign({id});
}

// An anchor that a search hides is none.
void LibrarySelection::selectFromAnchor(int row)
{
    const int anchorRow = m_anchor ? m_rows.rowOf(*m_anchor) : -1;
    if (row < 0) {
        return;
    }
    if (anchorRow < 0) {
        m_anchor = m_rows.idAt(row);
        assign({*m_anchor});
    } else {
        assign(idsBetween(anchorRow, row));
    }
}

void LibrarySelection::selectAll()
{
    const int count = m_rows.rowCount();
    assign(count > 0 ? idsBetween(0, count - 1) : QSet<QUuid>());
}

void LibrarySelection::clear()
{
    assign({});
}

void LibrarySelection::move(int rows, Qt::KeyboardModifiers modifiers)
{
    const int count = m_rows.rowCount();
    if (count == 0) {
        return;
    }
    const int from = currentRow();
    // What is reached first is the first tile, whatever the key.
    const int row = from < 0 ? 0 : std::clamp(from + rows, 0, count - 1);
    const QUuid id = m_rows.idAt(row);
    standAt(id);
    if (modifiers.testFlag(Qt::ControlModifier)) {
        return;
    }
    if (modifiers.testFlag(Qt::ShiftModifier)) {
        selectFromAnchor(row);
        return;
    }
    choose(id);
}

void LibrarySelection::beginMarquee(QPointF start, Qt::KeyboardModifiers modifiers)
{
    m_start = start;
    m_now = start;
    m_marked.reset();
    m_base = modifiers & (Qt::ShiftModifier | Qt::ControlModifier) ? m_ids : QSet<QUuid>();
    Q_EMIT marqueeChanged();
}

void LibrarySelection::moveMarquee(QPointF current)
{
    if (!m_start) {
        return;
    }
    m_now = current;
    m_didMarquee = true;
    Q_EMIT marqueeChanged();
    const CellRange cells = m_grid.cellsIn(marquee());
    // The pointer moves far more often than tiles come and go under it.
    if (m_marked != cells) {
        m_marked = cells;
        assign(QSet<QUuid>(m_base).unite(idsIn(cells)));
    }
}

QSet<QUuid> LibrarySelection::idsIn(const CellRange &cells) const
{
    QSet<QUuid> ids;
    const int count = cells.isEmpty() ? 0 : m_rows.rowCount();
    for (int line = cells.firstLine; line <= cells.lastLine; ++line) {
        if (line * m_grid.columns >= count) {
            break;
        }
        for (int column = cells.firstColumn; column <= cells.lastColumn; ++column) {
            const int row = line * m_grid.columns + column;
            if (row < count) {
                ids.insert(m_rows.idAt(row));
            }
        }
    }
    return ids;
}

void LibrarySelection::endMarquee()
{
    if (!m_start) {
        return;
    }
    m_start.reset();
    m_base.clear();
    m_marked.reset();
    Q_EMIT marqueeChanged();
    // The release that ends the drag may yet arrive as a click.
    QMetaObject::invokeMethod(
        this, [this] { m_didMarquee = false; }, Qt::QueuedConnection);
}

QRectF LibrarySelection::marquee() const
{
    return m_start ? QRectF(*m_start, m_now).normalized() : QRectF();
}

// The keyboard goes on where it was: after the row, or else before it.
std::optional<QUuid> LibrarySelection::nearestThatStays(int row, const QSet<QUuid> &gone) const
{
    const int count = row < 0 ? 0 : m_rows.rowCount();
    for (int after = row + 1; after < count; ++after) {
        if (const QUuid id = m_rows.idAt(after); !gone.contains(id)) {
            return id;
        }
    }
    for (int before = row - 1; before >= 0; --before) {
        if (const QUuid id = m_rows.idAt(before); !gone.contains(id)) {
            return id;
        }
    }
    return std::nullopt;
}

void LibrarySelection::forget(const QSet<QUuid> &ids)
{
    m_anchor.reset();
    if (m_current && ids.contains(*m_current)) {
        m_current = nearestThatStays(currentRow(), ids);
        Q_EMIT currentRowChanged();
    }
    assign(QSet<QUuid>(m_ids).subtract(ids));
}

}
