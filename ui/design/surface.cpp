// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/design/surface.h"

#include "ui/design/image_node.h"
#include "ui/design/surface_material.h"
#include "ui/design/surface_raster.h"

#include <QQuickWindow>
#include <QSGTexture>

namespace veltro {

Surface::Surface(QQuickItem *parent) : QQuickItem(parent)
{
    setFlag(ItemHasContents);
}

void Surface::geometryChange(const QRectF &newGeometry, const QRectF &oldGeometry)
{
    QQuickItem::geometryChange(newGeometry, oldGeometry);
    if (newGeometry.size() != oldGeometry.size()) {
        update();
    }
}

QSGNode *Surface::updatePaintNode(QSGNode *old, UpdatePaintNodeData *)
{
    const bool visible = m_style.fill.alpha() > 0 || m_style.hasShadow() ||
                         (m_style.strokeWidth > 0 && m_style.stroke.alpha() > 0);
    if (width() <= 0 || height() <= 0 || !visible) {
        delete old;
        return nullptr;
    }
    const auto api = window()->rendererInterface()->graphicsApi();
    return api == QSGRendererInterface::Software ? updatePicture(old) : updateQuad(old);
}

QSGNode *Surface::updateQuad(QSGNode *old) const
{
    auto *node = static_cast<SurfaceNode *>(old);
    if (node == nullptr) {
        node = new SurfaceNode;
    }
    node->update(size(), m_style);
    return node;
}

QSGNode *Surface::updatePicture(QSGNode *old) const
{
    QSGImageNode *node = imageNode(old, *window(), QSGTexture::Nearest);
    const double reach = m_style.reach();
    const QImage picture = rasterizeSurface(size(), m_style, window()->effectiveDevicePixelRatio());
    node->setTexture(window()->createTextureFromImage(picture));
    node->setRect(QRectF(-reach, -reach, width() + 2 * reach, height() + 2 * reach));
    return node;
}

}
