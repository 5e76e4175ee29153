// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
// Shows the pages of the gallery, to look at while designing.
//   veltro-gallery                     lists the pages
//   veltro-gallery PAGE                shows one
//   veltro-gallery --save FOLDER [PAGE]  leaves a picture of each, or of one
// VELTRO_GALLERY_SIZE=1600x1000 gives the pages of the pictures another size.
#include "tests/ui/gallery/gallery_pages.h"

#include <QDir>
#include <QGuiApplication>
#include <QTimer>

#include <cstdio>

namespace veltro {
namespace {

bool savePage(const QFileInfo &page, const QDir &folder, QSize size)
{
    const GalleryPage shown(page, size);
    if (!shown.window()) {
        return false;
    }
    shown.window()->show();
    // Transitions that begin with the page are to have ended.
    QEventLoop settled;
    QTimer::singleShot(900, &settled, &QEventLoop::quit);
    settled.exec();
    return shown.window()->grabWindow().save(
        folder.filePath(page.completeBaseName() + QStringLiteral(".png")));
}

int savePages(const QDir &folder, const QString &only, QSize size)
{
    for (const QFileInfo &page : galleryPages()) {
        if ((only.isEmpty() || page.completeBaseName() == only) && !savePage(page, folder, size)) {
            return 1;
        }
    }
    return 0;
}

QSize pictureSize()
{
    const QList<QByteArray> sides = qgetenv("VELTRO_GALLERY_SIZE").split('x');
    return sides.size() == 2 ? QSize(sides[0].toInt(), sides[1].toInt()) : QSize(980, 680);
}

int showPage(const QString &name)
{
    for (const QFileInfo &page : galleryPages()) {
        if (page.completeBaseName() != name) {
            continue;
        }
        const GalleryPage shown(page);
        if (!shown.window()) {
            return 1;
        }
        shown.window()->show();
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
        return savePages(QDir(arguments.value(2)), arguments.value(3), pictureSize());
    }
    if (arguments.size() > 1) {
        return showPage(arguments.at(1));
    }
    for (const QFileInfo &page : galleryPages()) {
        std::puts(qPrintable(page.completeBaseName()));
    }
    return 0;
}
