// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once
#include "ui/design/surface_style.h"

#include <QSGGeometryNode>
#include <QSGVertexColorMaterial>
#include <QSizeF>

#include <span>

namespace veltro {

/// Draws a Surface: its rim, where the shader works out each pixel, and what lies within as plain
/// colour, which costs a renderer without a graphics card a tenth. Everything that tells two
/// surfaces apart is vertex data, so neighbours share a batch. Render thread.
class SurfaceNode : public QSGGeometryNode {
public:
    SurfaceNode();
    void update(const QSizeF &size, const SurfaceStyle &style);

private:
    void updateRim(const QSizeF &size, const SurfaceStyle &style, std::span<const QRectF> pieces);
    void updatePlain(const QColor &fill, std::span<const QRectF> pieces);

    QSGGeometry m_rim;
    QSGGeometry m_plain;
    QSGVertexColorMaterial m_plainMaterial;
    QSGGeometryNode m_plainNode;
};

}
