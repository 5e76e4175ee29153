// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/ui/gallery/gallery_pages.h"

#include "tests/coordination/private_home.h"
#include "tests/ui/library/gallery_library.h"
#include "ui/design/appearance.h"

#include <QDir>
#include <QQmlComponent>
#include <QQuickItem>

namespace veltro {
namespace {

std::unique_ptr<QQuickWindow> windowAround(QQuickItem *page)
{
    auto window = std::make_unique<QQuickWindow>();
    page->setParent(window.get());
    page->setParentItem(window->contentItem());
    const auto fill = [page, content = window->contentItem()] { page->setSize(content->size()); };
    QObject::connect(window->contentItem(), &QQuickItem::widthChanged, page, fill);
    QObject::connect(window->contentItem(), &QQuickItem::heightChanged, page, fill);
    return window;
}

}

QFileInfoList galleryPages()
{
    return QDir(QStringLiteral(VELTRO_GALLERY_PAGES))
        .entryInfoList({QStringLiteral("*.qml")}, QDir::Files, QDir::Name);
}

void prepareGallery()
{
    static const PrivateHome home;
    applyAppearance();
    prepareGalleryLibrary();
}

GalleryPage::GalleryPage(const QFileInfo &page, QSize size)
{
    m_engine.addImportPath(QStringLiteral(":/qt/qml"));
    QQmlComponent component(&m_engine, QUrl::fromLocalFile(page.filePath()));
    QObject *root = component.create();
    if (!root) {
        qWarning("%s", qPrintable(component.errorString()));
        return;
    }
    auto *item = qobject_cast<QQuickItem *>(root);
    m_window = item ? windowAround(item)
                    : std::unique_ptr<QQuickWindow>(qobject_cast<QQuickWindow *>(root));
    m_window->resize(size.boundedTo(m_window->maximumSize()));
}

}
