// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/ui/gallery/gallery_pages.h"

#include "tests/ui/library/gallery_library.h"
#include "ui/design/appearance.h"

#include <QDir>
#include <QQmlEngine>
#include <QQuickView>

namespace veltro {

QFileInfoList galleryPages()
{
    return QDir(QStringLiteral(VELTRO_GALLERY_PAGES))
        .entryInfoList({QStringLiteral("*.qml")}, QDir::Files, QDir::Name);
}

void prepareGallery()
{
    applyAppearance();
    prepareGalleryLibrary();
}

bool showGalleryPage(QQuickView &view, const QFileInfo &page)
{
    view.engine()->addImportPath(QStringLiteral(":/qt/qml"));
    view.setResizeMode(QQuickView::SizeRootObjectToView);
    view.setSource(QUrl::fromLocalFile(page.filePath()));
    return view.status() == QQuickView::Ready;
}

}
