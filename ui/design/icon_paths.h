// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once
#include <QPainterPath>
#include <QString>

namespace veltro {

/// A drawing in a square of 24 by 24 units. Its parts are laid over each other in this order.
struct IconDrawing {
    QPainterPath outline; ///< stroked
    QPainterPath solid;   ///< filled
    QPainterPath cut;     ///< stroked, and taken away from what lies below
    QPainterPath over;    ///< stroked on top

    [[nodiscard]] bool isEmpty() const { return outline.isEmpty() && solid.isEmpty(); }
};

/// The drawing of this name; empty when there is none, which a caller treats as a mistake.
/// Names with a dot, and single words of that family, are symbols; the names in camel case are the
/// line icons. Main thread.
[[nodiscard]] const IconDrawing &iconDrawing(const QString &name);

}
