// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/design/icon_paths.h"
#include "ui/design/path_item.h"
#include "ui/design/surface_raster.h"

#include <QPainterPath>
#include <QPolygonF>
#include <QTest>

#include <cmath>

namespace veltro {

class TestSurface : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void cornersFollowTheirExponent()
    {
        for (const double exponent : {2.0, 2.6}) { // an arc, and a continuous corner
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

    void lineIconsHaveThePathsOfTheDesign_data();
    void lineIconsHaveThePathsOfTheDesign()
    {
        QFETCH(QPainterPath, path);
        QCOMPARE(iconDrawing(QString::fromLatin1(QTest::currentDataTag())).outline, path);
    }
    void theLinkIsTwoHooksThatMirrorEachOther()
    {
        const QPainterPath link = iconDrawing(QStringLiteral("link")).outline;
        QTransform half;
        half.translate(24, 24).rotate(180);
        const QList<QPolygonF> hooks = link.toSubpathPolygons();
        QCOMPARE(hooks.size(), 2);
        QCOMPARE(hooks[0].first(), QPointF(10, 14));
        QCOMPARE(hooks[1].first(), QPointF(14, 10));
        QCOMPARE(half.map(hooks[0]), hooks[1]);
    }

    void drawingsStayInTheirSquare()
    {
        for (const char *name :
             {"link", "house", "arrow.down.circle", "arrow.down.circle.fill", "square.stack",
              "slider.horizontal.3", "globe", "globe.slash", "arrow.right", "checkmark", "xmark",
              "xmark.circle.fill", "play.fill", "magnifyingglass", "square.grid.2x2.fill", "folder",
              "trash", "arrow.clockwise"}) {
            const IconDrawing &drawing = iconDrawing(QString::fromLatin1(name));
            const QRectF box = drawing.outline.boundingRect() | drawing.solid.boundingRect();
            QVERIFY2(!drawing.isEmpty() && QRectF(1, 1, 22, 22).contains(box), name);
        }
    }
};

void TestSurface::lineIconsHaveThePathsOfTheDesign_data()
{
    QTest::addColumn<QPainterPath>("path");
    const auto lines = [](const QList<QList<QPointF>> &strokes) {
        QPainterPath path;
        for (const QList<QPointF> &stroke : strokes) {
            path.addPolygon(stroke);
        }
        return path;
    };
    const auto box = [](const QRectF &frame, double radius) {
        QPainterPath path;
        path.addRoundedRect(frame, radius, radius);
        return path;
    };
    QPainterPath play = lines({{{8, 5}, {19, 12}, {8, 19}}});
    play.closeSubpath();
    QPainterPath film = box({4, 4, 16, 16}, 2);
    film.addPath(
        lines({{{4, 8}, {20, 8}}, {{4, 16}, {20, 16}}, {{9, 4}, {9, 20}}, {{15, 4}, {15, 20}}}));
    QPainterPath clipboard = box({6, 5, 12, 16}, 2);
    clipboard.addPath(box({9, 3, 6, 4}, 1));
    QTest::newRow("download") << lines({{{12, 4}, {12, 19}}, {{6, 13}, {12, 19}, {18, 13}}});
    QTest::newRow("arrowRight") << lines({{{4, 12}, {19, 12}}, {{13, 6}, {19, 12}, {13, 18}}});
    QTest::newRow("clipboard") << clipboard;
    QTest::newRow("close") << lines({{{6, 6}, {18, 18}}, {{18, 6}, {6, 18}}});
    QTest::newRow("play") << play;
    QTest::newRow("film") << film;
}

}

QTEST_MAIN(veltro::TestSurface)
#include "tst_surface.moc"
