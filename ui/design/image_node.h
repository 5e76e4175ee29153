// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once
#include <QSGImageNode>

class QQuickWindow;

namespace veltro {

/// The node of an item that shows one picture: the old one, or a new one that owns the textures it
/// is given. The scene graph's thread.
/// @param old null, or what this has returned for the same item.
[[nodiscard]] QSGImageNode *imageNode(QSGNode *old, QQuickWindow &window,
                                      QSGTexture::Filtering filtering);

}
