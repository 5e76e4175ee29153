// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once
#include <QFileInfoList>

class QQmlEngine;
class QQuickView;

namespace veltro {

/// The pages of the gallery: one for each component and each state of a screen, by name.
[[nodiscard]] QFileInfoList galleryPages();

/// Sets what the program sets before its first window: fonts and light colours.
void prepareGallery();

/// Loads a page into the view. False when it has an error.
[[nodiscard]] bool showGalleryPage(QQuickView &view, const QFileInfo &page);

}
