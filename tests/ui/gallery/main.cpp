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

#include <algorithm>
#include <cstdio>

using namespace Qt::StringLiterals;

namespace veltro {
namespace {

bool savePage(const QString &page, const QDir &folder)
{
    const QList<QByteArray> sides = qgetenv("VELTRO_GALLERY_SIZE").split('x');
    const GalleryPage shown(page, sides.size() == 2 ? QSize(sides[0].toInt(), sides[1].toInt())
                                                    : QSize(980, 680));
    if (!shown.window()) {
        return false;
    }
    shown.window()->show();
    // Transitions that begin with the page are to have ended.
    QEventLoop settled;
    QTimer::singleShot(900, &settled, &QEventLoop::quit);
    settled.exec();
    return shown.window()->grabWindow().save(folder.filePath(page + u".png"_s));
}

int showPage(const QString &page)
{
    const GalleryPage shown(page);
    if (!shown.window()) {
        return 1;
    }
    shown.window()->show();
    return QGuiApplication::exec();
}

}
}

int main(int argc, char *argv[])
{
    using namespace veltro;
    const QGuiApplication application(argc, argv);
    prepareGallery();
    const QStringList words = QGuiApplication::arguments();
    if (words.value(1) == u"--save") {
        const QStringList pages = words.size() > 3 ? words.mid(3) : galleryPages();
        return std::ranges::all_of(
                   pages, [&](const QString &page) { return savePage(page, words.value(2)); })
                   ? 0
                   : 1;
    }
    if (words.size() > 1) {
        return showPage(words[1]);
    }
    std::puts(qPrintable(galleryPages().join(u'\n')));
    return 0;
}
