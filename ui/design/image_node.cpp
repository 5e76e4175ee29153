// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/design/image_node.h"

#include <QQuickWindow>

namespace veltro {

QSGImageNode *imageNode(QSGNode *old, QQuickWindow &window, QSGTexture::Filtering filtering)
{
    if (old) {
        return static_cast<QSGImageNode *>(old);
    }
    QSGImageNode *node = window.createImageNode();
    node->setOwnsTexture(true);
    node->setFiltering(filtering);
    return node;
}

}
