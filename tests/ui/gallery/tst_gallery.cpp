// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/ui/gallery/gallery_pages.h"

#include <QQuickItem>
#include <QQuickView>
#include <QRegularExpression>
#include <QTest>

namespace veltro {
namespace {

/// How many different colours a picture has, up to a few.
int colourCount(const QImage &picture)
{
    QSet<QRgb> colours;
    for (int y = 0; y < picture.height() && colours.size() < 3; ++y) {
        for (int x = 0; x < picture.width() && colours.size() < 3; ++x) {
            colours.insert(picture.pixel(x, y));
        }
    }
    return int(colours.size());
}

}

class TestGallery : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void initTestCase() { prepareGallery(); }

    void everyPageLoadsAndDrawsWithoutAWarning_data()
    {
        QTest::addColumn<QFileInfo>("page");
        for (const QFileInfo &page : galleryPages()) {
            QTest::newRow(qPrintable(page.completeBaseName())) << page;
        }
    }
    void everyPageLoadsAndDrawsWithoutAWarning()
    {
        QFETCH(QFileInfo, page);
        QTest::failOnWarning(QRegularExpression(QStringLiteral(".*")));
        QQuickView view;
        view.resize(980, 680);
        QVERIFY(showGalleryPage(view, page));
        view.show();
        QVERIFY(QTest::qWaitForWindowExposed(&view));
        QTRY_VERIFY(colourCount(view.grabWindow()) >= 3);
    }
};

}

QTEST_MAIN(veltro::TestGallery)
#include "tst_gallery.moc"
