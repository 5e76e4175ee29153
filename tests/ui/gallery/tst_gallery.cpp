// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/ui/gallery/gallery_pages.h"
#include "tests/ui/screens/screen_under_test.h"
#include "tests/ui/screens/text_layout.h"

#include <QQuickItem>
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

/// The popups that have come all the way.
qsizetype openPopups(const QQuickWindow &window)
{
    return itemsWhere(*window.contentItem(),
                      [](const QQuickItem &item) {
                          return item.inherits("QQuickPopupItem") && item.isVisible() &&
                                 item.opacity() == 1 && item.scale() == 1;
                      })
        .size();
}

/// How many popups a page opens, by its own word.
qsizetype wantedPopups(const QQuickWindow &window)
{
    const QObject *page = window.contentItem()->childItems().value(0);
    const QVariant own = window.property("popups");
    return own.isValid() ? own.toInt() : page->property("popups").toInt();
}

}

class TestGallery : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void initTestCase() { prepareGallery(); }

    void everyPageDrawsItsTextsInTheirPlaces_data()
    {
        QTest::addColumn<QString>("page");
        for (const QString &page : galleryPages()) {
            QTest::newRow(qPrintable(page)) << page;
        }
    }
    void everyPageDrawsItsTextsInTheirPlaces();
};

void TestGallery::everyPageDrawsItsTextsInTheirPlaces()
{
    QFETCH(QString, page);
    // No window is raised where there is no desktop.
    QTest::failOnWarning(
        QRegularExpression(QStringLiteral("^(?!This plugin does not support raise)")));
    const GalleryPage shown(page);
    QVERIFY(shown.window());
    QQuickWindow &window = *shown.window();
    window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&window));
    QTRY_VERIFY(colourCount(window.grabWindow()) >= 3);
    QTRY_COMPARE(openPopups(window), wantedPopups(window));
    for (const QSize size : {QSize(980, 680), QSize(1366, 768), QSize(1600, 1000)}) {
        window.resize(size.boundedTo(window.maximumSize()));
        QString faults;
        const bool isInOrder = QTest::qWaitFor([&] {
            window.grabWindow(); // which lays out what waits for a frame
            faults = textFaults(window).join(u'\n');
            return window.size() == size.boundedTo(window.maximumSize()) && faults.isEmpty();
        });
        QVERIFY2(isInOrder,
                 qPrintable(QStringLiteral("%1 wide:\n%2").arg(size.width()).arg(faults)));
    }
}

}

QTEST_MAIN(veltro::TestGallery)
#include "tst_gallery.moc"
