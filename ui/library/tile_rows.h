// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once
#include <QUuid>

namespace veltro {

/// The visible items in display order, as far as choosing among them needs. Main thread.
class TileRows {
public:
    virtual ~TileRows() = default;
    [[nodiscard]] virtual int rowCount() const = 0;
    [[nodiscard]] virtual QUuid idAt(int row) const = 0;
    /// -1 for an item that is not visible.
    [[nodiscard]] virtual int rowOf(const QUuid &id) const = 0;
};

}
