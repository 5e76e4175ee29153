// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once
#include <QColor>
#include <QPointF>

namespace veltro {

/// How a Surface looks; lengths in logical pixels.
struct SurfaceStyle {
    QColor fill = Qt::white;
    QColor stroke = Qt::transparent;
    double strokeWidth = 0; ///< lies inside the edge
    double radius = 0;
    /// Corners follow |x|^n + |y|^n = r^n: 2 is a circle's arc, 2.6 runs softly into the sides.
    double cornerExponent = 2.6;
    QColor shadow = Qt::transparent;
    double shadowBlur = 0;
    QPointF shadowOffset;

    [[nodiscard]] bool hasShadow() const { return shadowBlur > 0 && shadow.alpha() > 0; }
    /// How far the drawing reaches beyond the edge, on every side.
    [[nodiscard]] double reach() const
    {
        if (!hasShadow()) {
            return 1;
        }
        return shadowBlur * 1.6 + qMax(qAbs(shadowOffset.x()), qAbs(shadowOffset.y()));
    }
    bool operator==(const SurfaceStyle &) const = default;
};

}
