// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once
#include "ui/design/surface_style.h"

#include <QSGGeometryNode>
#include <QSizeF>

namespace veltro {

/// One quad that draws a Surface. Everything that tells two surfaces apart is vertex data, so
/// neighbours share a batch. Render thread.
class SurfaceNode : public QSGGeometryNode {
public:
    SurfaceNode();
    void update(const QSizeF &size, const SurfaceStyle &style);

private:
    QSGGeometry m_quad;
};

}
