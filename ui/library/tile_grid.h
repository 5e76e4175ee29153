// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once
#include <QPointF>
#include <QRectF>
#include <QSizeF>

namespace veltro {

/// Cells of the grid, first and last included; empty when a last lies before its first.
struct CellRange {
    int firstLine = 0;
    int lastLine = -1;
    int firstColumn = 0;
    int lastColumn = -1;

    [[nodiscard]] bool isEmpty() const { return lastLine < firstLine || lastColumn < firstColumn; }
    bool operator==(const CellRange &) const = default;
};

/// Where the tiles are, in points from the top of the grid's content. Worked out rather than asked
/// of the tiles, since those outside of the view do not exist.
struct TileGrid {
    static constexpr double spacing = 12;
    static constexpr double smallestTile = 170;

    int columns = 1;
    QSizeF tile;

    /// As many columns as have room for the smallest tile, sharing the width evenly.
    /// @param captionHeight what a tile has below its picture, which is 16 to 9.
    [[nodiscard]] static TileGrid fitting(double width, double captionHeight);

    [[nodiscard]] QSizeF cell() const { return tile + QSizeF(spacing, spacing); }
    [[nodiscard]] QRectF frame(int row) const;
    /// The cells whose tiles intersect the rectangle, whether or not there is an item in each.
    [[nodiscard]] CellRange cellsIn(const QRectF &rectangle) const;

    bool operator==(const TileGrid &) const = default;
};

}
