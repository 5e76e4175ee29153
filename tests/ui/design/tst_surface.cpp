// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/design/icon_paths.h"
#include "ui/design/path_item.h"
#include "ui/design/surface_raster.h"

#include <QTest>

#include <cmath>

namespace veltro {

class TestSurface : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void cornersFollowTheirExponent_data()
    {
        QTest::addColumn<double>("exponent");
        QTest::newRow("an arc") << 2.0;
        QTest::newRow("a continuous corner") << 2.6;
    }
    void cornersFollowTheirExponent()
    {
        QFETCH(double, exponent);
        SurfaceStyle style;
        style.fill = Qt::red;
        style.radius = 40;
        style.cornerExponent = exponent;
        const QImage image = rasterizeSurface(QSizeF(100, 100), style, 1);
        // On the diagonal the edge lies where twice x^n is r^n.
        const double reach = 40 / std::pow(2, 1 / exponent);
        const int edge = int(std::lround(1 + 40 - reach));
        QCOMPARE(image.pixelColor(edge + 2, edge + 2), QColor(Qt::red));
        QCOMPARE(image.pixelColor(edge - 2, edge - 2).alpha(), 0);
    }

    void theHairlineLiesInsideTheEdgeAndTheFillWithinIt()
    {
        SurfaceStyle style;
        style.fill = Qt::white;
        style.stroke = Qt::blue;
        style.strokeWidth = 2;
        const QImage image = rasterizeSurface(QSizeF(50, 30), style, 1);
        QCOMPARE(image.size(), QSize(52, 32)); // one pixel for the soft edge on each side
        QCOMPARE(image.pixelColor(0, 15).alpha(), 0);
        QCOMPARE(image.pixelColor(1, 15), QColor(Qt::blue));
        QCOMPARE(image.pixelColor(2, 15), QColor(Qt::blue));
        QCOMPARE(image.pixelColor(3, 15), QColor(Qt::white));
        QCOMPARE(image.pixelColor(26, 31).alpha(), 0);
        QCOMPARE(image.pixelColor(26, 30), QColor(Qt::blue));
    }

    void theShadowFadesAndFallsWhereItIsOffset()
    {
        SurfaceStyle style;
        style.radius = 14;
        style.shadow = QColor::fromRgbF(0, 0, 0, 0.1F);
        style.shadowBlur = 16;
        style.shadowOffset = {0, 8};
        const QImage image = rasterizeSurface(QSizeF(200, 60), style, 1);
        const int middle = image.width() / 2;
        const int top = int(style.reach());
        const int bottom = top + 60;
        const auto alphaAt = [&](int y) { return image.pixelColor(middle, y).alpha(); };
        QVERIFY(alphaAt(bottom + 2) > alphaAt(bottom + 12));
        QVERIFY(alphaAt(bottom + 2) > 2 * alphaAt(top - 3));
        QVERIFY(alphaAt(bottom + 2) <= 26); // a tenth of black is the most
        QVERIFY(alphaAt(0) <= 1);
        QVERIFY(alphaAt(image.height() - 1) <= 1);
        QCOMPARE(image.pixelColor(middle, top + 30), QColor(Qt::white));
    }

    void aPictureAtTwiceTheScaleHasTwiceThePixels()
    {
        SurfaceStyle style;
        const QImage image = rasterizeSurface(QSizeF(10, 10), style, 2);
        QCOMPARE(image.size(), QSize(24, 24));
        QCOMPARE(image.devicePixelRatio(), 2.0);
    }

    void anIconFillsTheSmallerSideOfItsFrameAndIsCentred()
    {
        const QTransform placement = iconPlacement(QSizeF(36, 18));
        QCOMPARE(placement.map(QPointF(0, 0)), QPointF(9, 0));
        QCOMPARE(placement.map(QPointF(24, 24)), QPointF(27, 18));
    }

    void drawingsStayInTheirSquare_data()
    {
        QTest::addColumn<QRectF>("extent");
        QTest::newRow("download") << QRectF(6, 4, 12, 15);
        QTest::newRow("arrowRight") << QRectF(4, 6, 15, 12);
        QTest::newRow("clipboard") << QRectF(6, 3, 12, 18);
        QTest::newRow("close") << QRectF(6, 6, 12, 12);
        QTest::newRow("play") << QRectF(8, 5, 11, 14);
        QTest::newRow("film") << QRectF(4, 4, 16, 16);
        QTest::newRow("link") << QRectF();
        for (const char *name :
             {"house", "arrow.down.circle", "arrow.down.circle.fill", "square.stack",
              "slider.horizontal.3", "globe", "globe.slash", "arrow.right", "checkmark", "xmark",
              "xmark.circle.fill", "play.fill", "magnifyingglass", "square.grid.2x2.fill", "folder",
              "trash", "arrow.clockwise"}) {
            QTest::newRow(name) << QRectF();
        }
    }
    void drawingsStayInTheirSquare()
    {
        QFETCH(QRectF, extent);
        const IconDrawing &drawing = iconDrawing(QString::fromLatin1(QTest::currentDataTag()));
        QVERIFY(!drawing.isEmpty());
        const QRectF box = drawing.outline.boundingRect() | drawing.solid.boundingRect();
        QVERIFY(QRectF(1, 1, 22, 22).contains(box));
        if (!extent.isNull()) {
            QCOMPARE(box, extent);
        }
    }
};

}

QTEST_MAIN(veltro::TestSurface)
#include "tst_surface.moc"
