// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

namespace veltro {

/// Gives the pages of the gallery a library with a dozen items. Call it once.
void prepareGalleryLibrary();

}
