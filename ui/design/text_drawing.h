// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

namespace veltro {

/// Has texts drawn by the desktop's own font settings where a point is a pixel on every screen, and
/// Qt's own way where it is more; when screens come and go, too. Once, after the application object
/// is made and before the first window. Main thread.
void drawTextsAsScreensAllow();

}
