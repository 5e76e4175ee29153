// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/ui/gallery/gallery_pages.h"

#include "tests/coordination/private_home.h"
#include "tests/ui/library/gallery_library.h"
#include "ui/design/appearance.h"

#include <QDir>
#include <QQmlComponent>
#include <QQuickItem>

using namespace Qt::StringLiterals;

namespace veltro {
namespace {

/// The files that have several scenes. Each is told which of them to show, and knows these alone.
const QHash<QString, QStringList> &filesOfScenes()
{
    static const QHash<QString, QStringList> files{
        {u"Libraries"_s, {u"LibraryScreen"_s, u"LibraryMany"_s}},
        {u"Pickers"_s,
         {u"PickerMixed"_s, u"PickerUnplayable"_s, u"PickerFormatless"_s, u"PickerPlaylist"_s,
          u"PickerEmptyPlaylist"_s}},
        {u"Queues"_s, {u"QueueEmpty"_s, u"QueueFull"_s, u"QueueEnd"_s}},
        {u"Sheets"_s, {u"About"_s, u"BatchFilled"_s, u"DesignAlert"_s, u"QueueDetails"_s}},
        {u"Windows"_s,
         {u"WindowHome"_s, u"WindowHomeFull"_s, u"WindowQueueEmpty"_s, u"WindowQueue"_s,
          u"WindowLibrary"_s, u"WindowSettings"_s, u"WindowToasts"_s, u"WindowPicker"_s,
          u"WindowBatch"_s, u"WindowEngineError"_s, u"WindowUpdates"_s}},
    };
    return files;
}

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

QStringList galleryPages()
{
    QStringList pages;
    const QStringList files = QDir(u"" VELTRO_GALLERY_PAGES ""_s).entryList({u"*.qml"_s});
    for (const QString &file : files) {
        const QString name = file.chopped(4);
        pages += filesOfScenes().value(name, {name});
    }
    pages.sort();
    return pages;
}

void prepareGallery()
{
    static const PrivateHome home;
    applyAppearance();
    prepareGalleryLibrary();
}

GalleryPage::GalleryPage(const QString &page, QSize size)
{
    QString file = page;
    QVariantMap properties;
    for (const auto &[name, scenes] : filesOfScenes().asKeyValueRange()) {
        if (scenes.contains(page)) {
            file = name;
            properties = {{u"scene"_s, page}};
        }
    }
    m_engine.addImportPath(u":/qt/qml"_s);
    QQmlComponent component(&m_engine,
                            QUrl::fromLocalFile(u"" VELTRO_GALLERY_PAGES "/"_s + file + u".qml"_s));
    QObject *root = component.createWithInitialProperties(properties);
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
