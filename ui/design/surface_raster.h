// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once
#include "ui/design/surface_style.h"

#include <QImage>
#include <QSizeF>

namespace veltro {

/// The surface as a premultiplied picture that reaches style.reach() beyond each side of `size`,
/// by the formula of the shader. Any thread.
[[nodiscard]] QImage rasterizeSurface(const QSizeF &size, const SurfaceStyle &style, double scale);

}
