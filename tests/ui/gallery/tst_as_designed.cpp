// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
// The sizes, places, colours, fonts and motions that the design gives, against what is drawn.
#include "tests/ui/gallery/designed_pages.h"
#include "tests/ui/gallery/gallery_pages.h"

#include <QEasingCurve>
#include <QQuickItem>
#include <QTest>

#include <cmath>
#include <functional>
#include <numbers>

namespace veltro {
namespace {

/// A colour of the palette, or one with its opacity after a stroke.
QColor colourNamed(const QString &name)
{
    static const QHash<QString, QRgb> palette{
        {QStringLiteral("page"), 0xF6F3EF},        {QStringLiteral("card"), 0xFFFFFF},
        {QStringLiteral("sunken"), 0xF3EFEA},      {QStringLiteral("hairline"), 0xE1DED9},
        {QStringLiteral("ink"), 0x10141C},         {QStringLiteral("inkSecondary"), 0x3B414C},
        {QStringLiteral("inkTertiary"), 0x737B8A}, {QStringLiteral("neutral"), 0x727272},
        {QStringLiteral("accent"), 0x6F64E5},      {QStringLiteral("success"), 0x147F51},
        {QStringLiteral("warning"), 0xE38513},     {QStringLiteral("danger"), 0xCF3938},
        {QStringLiteral("white"), 0xFFFFFF},       {QStringLiteral("black"), 0x000000},
    };
    const QStringList parts = name.split(u'/');
    if (parts[0] == u"clear") {
        return Qt::transparent;
    }
    QColor colour = QColor::fromRgb(palette.value(parts[0]));
    colour.setAlphaF(parts.size() > 1 ? parts[1].toFloat() : 1);
    return colour;
}

bool isColour(const QColor &drawn, const char *wanted)
{
    const QColor colour = colourNamed(QString::fromLatin1(wanted));
    return drawn.alpha() == 0 ? colour.alpha() == 0
                              : std::abs(drawn.alpha() - colour.alpha()) <= 1 &&
                                    drawn.rgb() << 8 == colour.rgb() << 8;
}

bool isAbout(double drawn, double wanted)
{
    return wanted == any || std::abs(drawn - wanted) <= 0.5;
}

class Page {
public:
    explicit Page(const PageRows &rows) : m_rows(rows) {}

    /// What is not as it was designed.
    [[nodiscard]] QStringList faults(QQuickItem &root)
    {
        m_root = &root;
        m_faults.clear();
        check(m_rows.texts, &Page::checkText);
        check(m_rows.boxes, &Page::checkBox);
        check(m_rows.icons, &Page::checkIcon);
        check(m_rows.shadows, &Page::checkShadow);
        check(m_rows.motions, &Page::checkMotion);
        for (const InsetRow &row : m_rows.insets) {
            QQuickItem *outer = find(row.outer);
            QQuickItem *inner = outer ? itemAt(*outer, row.inner) : nullptr;
            if (!outer || !inner) {
                fault(row.inner, "is not there");
            } else {
                checkInset(row, *outer, *inner);
            }
        }
        return m_faults;
    }

    /// What the path names; null when it is not there.
    [[nodiscard]] static QQuickItem *itemAt(QQuickItem &root, const char *path)
    {
        QQuickItem *item = &root;
        for (const QString &name : QString::fromUtf8(path).split(QStringLiteral(" > "))) {
            item = item ? step(item, name) : nullptr;
        }
        return item;
    }

private:
    using Test = std::function<bool(const QQuickItem &)>;

    template <typename Row>
    void check(const std::vector<Row> &rows, void (Page::*one)(const Row &, QQuickItem &))
    {
        for (const Row &row : rows) {
            if (QQuickItem *item = find(row.item)) {
                (this->*one)(row, *item);
            } else {
                fault(row.item, "is not there");
            }
        }
    }

    static QQuickItem *below(QQuickItem *above, const Test &test)
    {
        const QList<QQuickItem *> children = above->childItems();
        for (QQuickItem *child : children) {
            if (test(*child)) {
                return child;
            }
            if (QQuickItem *found = below(child, test)) {
                return found;
            }
        }
        return nullptr;
    }

    static QQuickItem *step(QQuickItem *above, QString name)
    {
        const qsizetype up = name.count(u'^');
        name.remove(u'^');
        const QString bare = name.mid(1);
        QQuickItem *item = below(above, [&](const QQuickItem &one) {
            if (name.startsWith(u'#')) {
                return one.objectName() == bare;
            }
            if (name.startsWith(u'@')) {
                return one.inherits("veltro::PathItem") && one.isVisible() &&
                       one.property("name").toString() == bare;
            }
            return one.inherits("QQuickText") && one.isVisible() &&
                   one.property("text").toString() == name;
        });
        for (qsizetype times = 0; item && times < up; ++times) {
            item = item->parentItem();
        }
        return item;
    }

    [[nodiscard]] QQuickItem *find(const char *path) { return itemAt(*m_root, path); }

    void fault(const char *item, const QString &what)
    {
        m_faults.append(QString::fromUtf8(item) + u' ' + what);
    }
    void fault(const char *item, const char *what) { fault(item, QString::fromLatin1(what)); }
    void expect(const char *item, const char *what, double drawn, double wanted)
    {
        if (!isAbout(drawn, wanted)) {
            fault(item, QStringLiteral("%1 is %2, not %3")
                            .arg(QString::fromLatin1(what))
                            .arg(drawn)
                            .arg(wanted));
        }
    }
    void expect(const char *item, const char *what, const QColor &drawn, const char *wanted)
    {
        if (!isColour(drawn, wanted)) {
            fault(item, QStringLiteral("%1 is %2, not %3")
                            .arg(QString::fromLatin1(what), drawn.name(QColor::HexArgb),
                                 QString::fromLatin1(wanted)));
        }
    }

    void checkText(const TextRow &row, QQuickItem &item)
    {
        const auto font = item.property("font").value<QFont>();
        expect(row.item, "size", font.pixelSize(), row.size);
        expect(row.item, "weight", font.weight(), row.weight);
        expect(row.item, "colour", item.property("color").value<QColor>(), row.colour);
        if (std::abs(font.letterSpacing() - row.tracking) > 0.02) {
            fault(row.item, QStringLiteral("tracking is %1").arg(font.letterSpacing()));
        }
    }

    void checkBox(const BoxRow &row, QQuickItem &item)
    {
        expect(row.item, "width", item.width(), row.width);
        expect(row.item, "height", item.height(), row.height);
        auto *ground = item.property("background").value<QQuickItem *>();
        const QQuickItem &drawn = ground ? *ground : item;
        expect(row.item, "radius", drawn.property("radius").toDouble(), row.radius);
        if (qstrcmp(row.fill, "none") != 0) {
            expect(row.item, "fill", drawn.property("color").value<QColor>(), row.fill);
        }
        if (qstrcmp(row.stroke, "none") == 0) {
            return;
        }
        const bool isSurface = drawn.inherits("veltro::Surface");
        const auto *border = isSurface ? nullptr : drawn.property("border").value<QObject *>();
        expect(row.item, "stroke",
               (border ? border->property("color") : drawn.property("strokeColor")).value<QColor>(),
               row.stroke);
        expect(row.item, "stroke's width",
               (border ? border->property("width") : drawn.property("strokeWidth")).toDouble(),
               row.strokeWidth);
    }

    void checkInset(const InsetRow &row, QQuickItem &outer, QQuickItem &inner)
    {
        const QRectF around(QPointF(), outer.size());
        const QRectF box = inner.mapRectToItem(&outer, QRectF(QPointF(), inner.size()));
        const QByteArray name = QByteArray(row.outer) + " > " + row.inner;
        expect(name.constData(), "left", box.left() - around.left(), row.left);
        expect(name.constData(), "top", box.top() - around.top(), row.top);
        expect(name.constData(), "right", around.right() - box.right(), row.right);
        expect(name.constData(), "bottom", around.bottom() - box.bottom(), row.bottom);
    }

    void checkIcon(const IconRow &row, QQuickItem &item)
    {
        expect(row.item, "width", item.width(), row.side);
        expect(row.item, "height", item.height(), row.side);
        expect(row.item, "colour", item.property("color").value<QColor>(), row.colour);
    }

    void checkShadow(const ShadowRow &row, QQuickItem &item)
    {
        const auto colour = item.property("shadowColor").value<QColor>();
        expect(row.item, "shadow's strength", colour.alphaF() * 100, row.opacity * 100);
        expect(row.item, "shadow's blur", item.property("shadowBlur").toDouble(), row.blur);
        expect(row.item, "shadow's offset", item.property("shadowOffsetY").toDouble(), row.offset);
    }

    void checkMotion(const MotionRow &row, QQuickItem &item)
    {
        for (QObject *one : item.findChildren<QObject *>()) {
            if (one->inherits("QQuickBehavior")) {
                qmlExecuteDeferred(one); // or its animation is made when it first moves
            }
        }
        const QList<QObject *> owned = item.findChildren<QObject *>();
        for (const QObject *one : owned) {
            if (one->inherits("QQuickNumberAnimation") && moves(row, *one)) {
                return;
            }
        }
        fault(row.item, "does not move so");
    }

    static bool moves(const MotionRow &row, const QObject &animation)
    {
        const int duration = animation.property("duration").toInt();
        const auto curve = animation.property("easing").value<QEasingCurve>();
        if (row.curve == Curve::spring) {
            return isCriticalSpring(curve, duration, row.milliseconds);
        }
        QEasingCurve wanted(QEasingCurve::BezierSpline);
        const QPointF first = row.curve == Curve::easeOut ? QPointF() : QPointF(0.42, 0);
        const QPointF second = row.curve == Curve::easeIn ? QPointF(1, 1) : QPointF(0.58, 1);
        wanted.addCubicBezierSegment(first, second, {1, 1});
        return duration == row.milliseconds && farthest(curve, [&](double share) {
                                                   return wanted.valueForProgress(share);
                                               }) < 0.001;
    }

    /// 1 - (1 + wt) e^-wt, where a response is the time of one turn without damping.
    static bool isCriticalSpring(const QEasingCurve &curve, int duration, int response)
    {
        const auto spring = [&](double share) {
            const double turned = 2 * std::numbers::pi * share * duration / response;
            return 1 - (1 + turned) * std::exp(-turned);
        };
        return farthest(curve, spring) < 0.03;
    }

    static double farthest(const QEasingCurve &curve, const std::function<double(double)> &wanted)
    {
        double most = 0;
        for (int step = 0; step <= 100; ++step) {
            const double share = step / 100.0;
            most = std::max(most, std::abs(curve.valueForProgress(share) - wanted(share)));
        }
        return most;
    }

    const PageRows &m_rows;
    QQuickItem *m_root = nullptr;
    QStringList m_faults;
};

}

class TestAsDesigned : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void initTestCase() { prepareGallery(); }

    void aPressedButtonIsFainter_data()
    {
        QTest::addColumn<QByteArray>("button");
        QTest::addColumn<QByteArray>("fill");
        QTest::newRow("primary") << QByteArray("Primary^^") << QByteArray("accent/0.9");
        QTest::newRow("secondary") << QByteArray("Secondary^^") << QByteArray("card");
        QTest::newRow("ghost") << QByteArray("Ghost^^") << QByteArray("sunken");
        QTest::newRow("success") << QByteArray("Success^^") << QByteArray("success");
    }
    void aPressedButtonIsFainter()
    {
        QFETCH(QByteArray, button);
        QFETCH(QByteArray, fill);
        const GalleryPage shown(pageNamed("DesignParts"));
        QQuickWindow &window = *shown.window();
        window.show();
        QVERIFY(QTest::qWaitForWindowExposed(&window));
        QQuickItem *item = Page::itemAt(*window.contentItem(), button.constData());
        QVERIFY(item);
        QTest::mousePress(&window, Qt::LeftButton, {},
                          item->mapToScene({item->width() / 2, item->height() / 2}).toPoint());
        auto *ground = item->property("background").value<QQuickItem *>();
        QVERIFY(isColour(ground->property("color").value<QColor>(), fill.constData()));
        QTRY_COMPARE(ground->opacity(), 0.92);
        QTRY_COMPARE(item->property("contentItem").value<QQuickItem *>()->opacity(), 0.92);
    }

    void pagesAreDrawnAsTheyWereDesigned_data()
    {
        QTest::addColumn<int>("index");
        for (std::size_t index = 0; index < designedPages().size(); ++index) {
            QTest::newRow(designedPages()[index].page) << int(index);
        }
    }
    void pagesAreDrawnAsTheyWereDesigned()
    {
        QFETCH(int, index);
        const PageRows &rows = designedPages()[std::size_t(index)];
        const GalleryPage shown(pageNamed(rows.page), {980, rows.height});
        QVERIFY(shown.window());
        shown.window()->show();
        QVERIFY(QTest::qWaitForWindowExposed(shown.window()));
        QStringList faults;
        const bool isAsDesigned = QTest::qWaitFor([&] {
            faults = Page(rows).faults(*shown.window()->contentItem());
            return faults.isEmpty();
        });
        QVERIFY2(isAsDesigned, qPrintable(u'\n' + faults.join(u'\n')));
    }

private:
    static QFileInfo pageNamed(const char *name)
    {
        return QFileInfo(galleryPages().constFirst().dir(),
                         QString::fromLatin1(name) + QStringLiteral(".qml"));
    }
};

}

QTEST_MAIN(veltro::TestAsDesigned)
#include "tst_as_designed.moc"
