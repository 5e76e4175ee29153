// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

namespace veltro {

/// Sets the program's font and its light colours, whatever the desktop's theme, and has the focus
/// shown to who uses keys, and what is disabled told to who listens. Once, after the application
/// object is made and before the first window. Main thread.
void applyAppearance();

}
