// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once
#include <QStringList>

class QQuickWindow;

namespace veltro {

/// What is wrong with the texts that are seen in a window, a line each: one that is painted over
/// another or over a button, one that leaves the card, the button, the clipped part or the window
/// that it stands in, and a short one that is cut. What a view can scroll to is in order.
[[nodiscard]] QStringList textFaults(const QQuickWindow &window);

}
