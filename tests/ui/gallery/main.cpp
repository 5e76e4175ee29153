// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
// Shows the pages of the gallery, to look at while designing.
//   veltro-gallery                     lists the pages
//   veltro-gallery PAGE                shows one
//   veltro-gallery --save FOLDER [PAGE]  leaves a picture of each, or of one
#include "tests/ui/gallery/gallery_pages.h"

#include <QDir>
#include <QGuiApplication>
#include <QQuickView>
#include <QTimer>

#include <cstdio>

namespace veltro {
namespace {

constexpr QSize pageSize{980, 680};

bool savePage(const QFileInfo &page, const QDir &folder)
{
    QQuickView view;
    view.resize(pageSize);
    if (!showGalleryPage(view, page)) {
        return false;
    }
    view.show();
    // Transitions that begin with the page are to have ended.
    QEventLoop settled;
    QTimer::singleShot(900, &settled, &QEventLoop::quit);
    settled.exec();
    return view.grabWindow().save(
        folder.filePath(page.completeBaseName() + QStringLiteral(".png")));
}

int savePages(const QDir &folder, const QString &only)
{
    for (const QFileInfo &page : galleryPages()) {
        if ((only.isEmpty() || page.completeBaseName() == only) && !savePage(page, folder)) {
            return 1;
        }
    }
    return 0;
}

int showPage(const QString &name)
{
    QQuickView view;
    view.resize(pageSize);
    for (const QFileInfo &page : galleryPages()) {
        if (page.completeBaseName() != name) {
            continue;
        }
        if (!showGalleryPage(view, page)) {
            return 1;
        }
        view.show();
        return QGuiApplication::exec();
    }
    return 1;
}

}
}

int main(int argc, char *argv[])
{
    using namespace veltro;
    const QGuiApplication application(argc, argv);
    prepareGallery();
    const QStringList arguments = QGuiApplication::arguments();
    if (arguments.value(1) == QStringLiteral("--save")) {
        return savePages(QDir(arguments.value(2)), arguments.value(3));
    }
    if (arguments.size() > 1) {
        return showPage(arguments.at(1));
    }
    for (const QFileInfo &page : galleryPages()) {
        std::puts(qPrintable(page.completeBaseName()));
    }
    return 0;
}
