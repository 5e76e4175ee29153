// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once
#include "ui/library/tile_grid.h"
#include "ui/library/tile_rows.h"

#include <QObject>
#include <QPointF>
#include <QRectF>
#include <QSet>
#include <QUuid>
#include <QtQml/qqmlregistration.h>

#include <optional>

namespace veltro {

/// Which items are chosen, and how clicks, drags and keys change that. Knows items by their ids, so
/// that a choice outlives a search that hides it. Main thread.
class LibrarySelection : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("a LibraryScreen has one")
    Q_PROPERTY(int count READ count NOTIFY changed)
    Q_PROPERTY(int revision READ revision NOTIFY changed)
    Q_PROPERTY(int currentRow READ currentRow NOTIFY currentRowChanged)
    Q_PROPERTY(bool dragging READ isDragging NOTIFY marqueeChanged)
    Q_PROPERTY(QRectF marquee READ marquee NOTIFY marqueeChanged)

public:
    /// A drag begins when the pointer has gone this far, in points.
    static constexpr double dragDistance = 6;

    /// @param rows outlives this.
    explicit LibrarySelection(const TileRows &rows, QObject *parent = nullptr);

    [[nodiscard]] const QSet<QUuid> &ids() const { return m_ids; }
    [[nodiscard]] int count() const { return static_cast<int>(m_ids.size()); }
    /// Grows with each change: what is bound to contains() reads it to be asked again.
    [[nodiscard]] int revision() const { return m_revision; }
    Q_INVOKABLE [[nodiscard]] bool contains(const QUuid &id) const { return m_ids.contains(id); }
    [[nodiscard]] std::optional<QUuid> anchor() const { return m_anchor; }
    /// Where the keyboard stands; -1 when nowhere.
    [[nodiscard]] int currentRow() const;

    /// A plain tap on a tile.
    Q_INVOKABLE void click(const QUuid &id, Qt::KeyboardModifiers modifiers);
    /// That item alone, whatever pointer or keys are doing.
    void choose(const QUuid &id);
    /// The keyboard stands at that item; the choice stays as it is.
    Q_INVOKABLE void standAt(const QUuid &id);
    /// All visible items.
    Q_INVOKABLE void selectAll();
    Q_INVOKABLE void clear();
    /// The arrow keys and their kin move by so many rows: alone they choose the item that they
    /// reach, with Shift everything from the anchor to it, with Control nothing.
    Q_INVOKABLE void move(int rows, Qt::KeyboardModifiers modifiers);
    /// A tile is dragged away, not clicked, whatever comes of it.
    Q_INVOKABLE void refuseNextClick() { m_didMarquee = true; }

    // A rubber band, in points of the grid's content.
    Q_INVOKABLE void beginMarquee(QPointF start, Qt::KeyboardModifiers modifiers);
    Q_INVOKABLE void moveMarquee(QPointF current);
    Q_INVOKABLE void endMarquee();
    [[nodiscard]] bool isDragging() const { return m_start.has_value(); }
    [[nodiscard]] QRectF marquee() const;
    void setGrid(const TileGrid &grid) { m_grid = grid; }

    /// These items are gone: they leave the choice, and the anchor goes with any of them.
    void forget(const QSet<QUuid> &ids);

Q_SIGNALS:
    void changed();
    void marqueeChanged();
    void currentRowChanged();

private:
    void assign(QSet<QUuid> ids);
    [[nodiscard]] QSet<QUuid> idsBetween(int one, int other) const;
    [[nodiscard]] QSet<QUuid> idsIn(const CellRange &cells) const;
    void selectFromAnchor(int row);
    [[nodiscard]] std::optional<QUuid> nearestThatStays(int row, const QSet<QUuid> &gone) const;

    const TileRows &m_rows;
    TileGrid m_grid;
    QSet<QUuid> m_ids;
    std::optional<QUuid> m_anchor;
    std::optional<QUuid> m_current;
    int m_revision = 0;

    std::optional<QPointF> m_start;
    QPointF m_now;
    QSet<QUuid> m_base;                // what a drag adds to
    std::optional<CellRange> m_marked; // what the drag covers
    bool m_didMarquee = false;         // the click that ends a drag is none
};

}
