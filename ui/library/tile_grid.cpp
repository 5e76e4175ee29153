// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/library/tile_grid.h"

#include <algorithm>
#include <cmath>

namespace veltro {
namespace {

constexpr double pictureRatio = 16.0 / 9.0;

// The first and the last of a series of stretches, each as long as `length` and `step` apart, that
// share a point with what lies between two edges.
std::pair<int, int> stretchesBetween(double low, double high, double length, double step)
{
    if (step <= 0) {
        return {0, -1};
    }
    const int first = static_cast<int>(std::ceil((low - length) / step));
    const int last = static_cast<int>(std::floor(high / step));
    return {std::max(0, first), last};
}

}

TileGrid TileGrid::fitting(double width, double captionHeight)
{
    TileGrid grid;
    grid.columns =
        std::max(1, static_cast<int>(std::floor((width + spacing) / (smallestTile + spacing))));
    const double tileWidth = std::max(1.0, std::floor((width + spacing) / grid.columns - spacing));
    grid.tile = {tileWidth, std::round(tileWidth / pictureRatio) + captionHeight};
    return grid;
}

QRectF TileGrid::frame(int row) const
{
    const QSizeF step = cell();
    const int line = row / columns;
    return {QPointF(row % columns * step.width(), line * step.height()), tile};
}

CellRange TileGrid::cellsIn(const QRectF &rectangle) const
{
    const QRectF area = rectangle.normalized();
    const auto [firstLine, lastLine] =
        stretchesBetween(area.top(), area.bottom(), tile.height(), cell().height());
    const auto [firstColumn, lastColumn] =
        stretchesBetween(area.left(), area.right(), tile.width(), cell().width());
    return {firstLine, lastLine, firstColumn, std::min(lastColumn, columns - 1)};
}

}
