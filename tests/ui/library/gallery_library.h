// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once
#include <memory>

namespace veltro {

class ModelContainer;

/// Gives the pages of the gallery a library with two dozen items, titles of every kind among them.
/// Call it once.
void prepareGalleryLibrary();
/// That library.
[[nodiscard]] std::shared_ptr<ModelContainer> galleryLibrary();

}
