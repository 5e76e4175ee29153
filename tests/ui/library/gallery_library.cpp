// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/ui/library/gallery_library.h"

#include "tests/ui/library/library_fixture.h"
#include "tests/ui/samples/sample_texts.h"

#include <array>

namespace veltro {
namespace {

struct GalleryItem {
    const char *title;
    const char *uploader; // null for none
    double seconds;       // negative when nobody knows
    Qt::GlobalColor colour;
};

constexpr std::array galleryItems{
    GalleryItem{"Tides of the northern coast", "Harbour Films", 754, Qt::darkCyan},
    GalleryItem{"How a bell is cast", "The Workshop", 1803, Qt::darkYellow},
    GalleryItem{"Night train", nullptr, 61, Qt::darkBlue},
    GalleryItem{"A title that goes on until there is no room left for it in two lines of a tile",
                "An uploader with a name that is as long as the title", 45'296, Qt::darkMagenta},
    GalleryItem{"שלום עולם, הסרטון החדש", "ערוץ", 4, Qt::darkGreen},
    GalleryItem{"🎬 Emoji 🎉 and <b>markup</b>", "<i>nobody</i>", 59, Qt::darkRed},
    GalleryItem{"Sound without a picture", "Radio", 3600, Qt::transparent},
    GalleryItem{"Without anything", nullptr, -1, Qt::transparent},
    GalleryItem{"Snow, seen from above", "Harbour Films", 222, Qt::lightGray},
    GalleryItem{"Thirty seconds of rain", "Field Notes", 30, Qt::gray},
    GalleryItem{"An evening in the kitchen", "Field Notes", 2710, Qt::yellow},
};

LibraryFixture &fixture()
{
    static LibraryFixture library;
    return library;
}

}

std::shared_ptr<ModelContainer> galleryLibrary()
{
    return fixture().services().container();
}

void prepareGalleryLibrary()
{
    LibraryFixture &library = fixture();
    std::vector<DownloadItem> items;
    for (const GalleryItem &one : galleryItems) {
        DownloadItem item = library.item(QString::fromUtf8(one.title));
        if (one.uploader) {
            item.uploader = QString::fromUtf8(one.uploader);
        }
        if (one.seconds >= 0) {
            item.durationSeconds = one.seconds;
        }
        if (one.colour != Qt::transparent) {
            library.giveThumbnail(item, one.colour);
        }
        item.formatLabel = QStringLiteral("1080p");
        item.fileSizeBytes = 12'345'678;
        item.localFileURL = QUrl::fromLocalFile(library.path(QStringLiteral("gone.mp4")));
        items.push_back(item);
    }
    for (const QString &title : sampleTitles()) {
        DownloadItem item = library.item(title);
        item.uploader = title;
        items.push_back(item);
    }
    library.save(items);
}

}
