// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
// The sizes, places, colours, fonts and motions that the design gives, against what is drawn.
#include "tests/ui/gallery/designed_pages.h"
#include "tests/ui/gallery/gallery_pages.h"
#include "tests/ui/screens/screen_under_test.h"

#include <QEasingCurve>
#include <QQuickItem>
#include <QTest>

#include <algorithm>
#include <cmath>
#include <functional>
#include <numbers>

using namespace Qt::StringLiterals;

namespace veltro {
namespace {

/// A colour of the palette, or one with its opacity after a stroke.
QColor colourNamed(const QByteArray &name)
{
    static const QHash<QByteArray, QRgb> palette{
        {"page", 0xF6F3EF},     {"card", 0xFFFFFF},        {"sunken", 0xF3EFEA},
        {"hairline", 0xE1DED9}, {"ink", 0x10141C},         {"inkSecondary", 0x3B414C},
        {"neutral", 0x727272},  {"inkTertiary", 0x737B8A}, {"accent", 0x6F64E5},
        {"success", 0x147F51},  {"warning", 0xE38513},     {"danger", 0xCF3938},
        {"white", 0xFFFFFF},    {"black", 0x000000},
    };
    const QList<QByteArray> parts = name.split('/');
    if (parts[0] == "clear") {
        return Qt::transparent;
    }
    QColor colour = QColor::fromRgb(palette.value(parts[0]));
    colour.setAlphaF(parts.size() > 1 ? parts[1].toFloat() : 1);
    return colour;
}

bool isColour(const QColor &drawn, const char *wanted)
{
    const QColor colour = colourNamed(wanted);
    return drawn.alpha() == 0 ? colour.alpha() == 0
                              : std::abs(drawn.alpha() - colour.alpha()) <= 1 &&
                                    drawn.rgb() << 8 == colour.rgb() << 8;
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
        check(m_rows.insets, &Page::checkInset);
        check(m_rows.icons, &Page::checkIcon);
        check(m_rows.shadows, &Page::checkShadow);
        check(m_rows.motions, &Page::checkMotion);
        return m_faults;
    }

    /// What the path names; null when it is not there.
    [[nodiscard]] static QQuickItem *itemAt(QQuickItem &root, const char *path)
    {
        QQuickItem *item = &root;
        for (const QString &name : QString::fromUtf8(path).split(u" > "_s)) {
            item = item ? step(*item, name) : nullptr;
        }
        return item;
    }

private:
    template <typename Row>
    void check(const std::vector<Row> &rows, void (Page::*one)(const Row &, QQuickItem &))
    {
        for (Row row : rows) {
            for (const QString &path : QString::fromUtf8(row.item).split(u" | "_s)) {
                const QByteArray name = path.toUtf8();
                row.item = name.constData();
                if (QQuickItem *item = itemAt(*m_root, row.item)) {
                    (this->*one)(row, *item);
                } else {
                    fault(row.item, u"is not there"_s);
                }
            }
        }
    }

    static QQuickItem *step(QQuickItem &above, QString name)
    {
        const qsizetype up = name.count(u'^');
        name.remove(u'^');
        const QString bare = name.mid(1);
        const auto isMeant = [&](const QQuickItem &one) {
            if (name.startsWith(u'#')) {
                return one.objectName() == bare;
            }
            const bool isDrawing = name.startsWith(u'@');
            return one.isVisible() &&
                   (isDrawing ? one.inherits("veltro::PathItem") && one.property("name") == bare
                              : one.inherits("QQuickText") && one.property("text") == name);
        };
        QQuickItem *item = itemsWhere(above, isMeant).value(0);
        for (qsizetype times = 0; item && times < up; ++times) {
            item = item->parentItem();
        }
        return item;
    }

    void fault(const char *item, const QString &what)
    {
        m_faults.append(QString::fromUtf8(item) + u' ' + what);
    }
    void expect(const char *item, const char *what, double drawn, double wanted)
    {
        if (wanted != any && std::abs(drawn - wanted) > 0.5) {
            fault(item, u"%1 is %2, not %3"_s.arg(QLatin1String(what)).arg(drawn).arg(wanted));
        }
    }
    void expect(const char *item, const char *what, const QVariant &drawn, const char *wanted)
    {
        const auto colour = drawn.value<QColor>();
        if (qstrcmp(wanted, "none") != 0 && !isColour(colour, wanted)) {
            fault(item, u"%1 is %2, not %3"_s.arg(QLatin1String(what), colour.name(QColor::HexArgb),
                                                  QLatin1String(wanted)));
        }
    }

    void checkText(const TextRow &row, QQuickItem &item)
    {
        const auto font = item.property("font").value<QFont>();
        expect(row.item, "size", font.pixelSize(), row.size);
        expect(row.item, "weight", font.weight(), row.weight);
        expect(row.item, "colour", item.property("color"), row.colour);
        if (std::abs(font.letterSpacing() - row.tracking) > 0.02) {
            fault(row.item, u"tracking is %1"_s.arg(font.letterSpacing()));
        }
    }

    void checkBox(const BoxRow &row, QQuickItem &item)
    {
        expect(row.item, "width", item.width(), row.width);
        expect(row.item, "height", item.height(), row.height);
        auto *ground = item.property("background").value<QQuickItem *>();
        const QQuickItem &drawn = ground ? *ground : item;
        expect(row.item, "radius", drawn.property("radius").toDouble(), row.radius);
        expect(row.item, "fill", drawn.property("color"), row.fill);
        if (qstrcmp(row.stroke, "none") == 0) {
            return;
        }
        const bool isSurface = drawn.inherits("veltro::Surface");
        const auto *border = isSurface ? nullptr : drawn.property("border").value<QObject *>();
        const auto stroke = [&](const char *ofBorder, const char *own) {
            return border ? border->property(ofBorder) : drawn.property(own);
        };
        expect(row.item, "stroke", stroke("color", "strokeColor"), row.stroke);
        expect(row.item, "stroke's width", stroke("width", "strokeWidth").toDouble(),
               row.strokeWidth);
    }

    void checkInset(const InsetRow &row, QQuickItem &outer)
    {
        const QQuickItem *inner = itemAt(outer, row.inner);
        if (!inner) {
            fault(row.inner, u"is not there"_s);
            return;
        }
        const QRectF box = inner->mapRectToItem(&outer, QRectF(QPointF(), inner->size()));
        const QByteArray name = QByteArray(row.item) + " > " + row.inner;
        expect(name.constData(), "left", box.left(), row.left);
        expect(name.constData(), "top", box.top(), row.top);
        expect(name.constData(), "right", outer.width() - box.right(), row.right);
        expect(name.constData(), "bottom", outer.height() - box.bottom(), row.bottom);
    }

    void checkIcon(const IconRow &row, QQuickItem &item)
    {
        expect(row.item, "width", item.width(), row.side);
        expect(row.item, "height", item.height(), row.side);
        expect(row.item, "colour", item.property("color"), row.colour);
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
        if (std::ranges::none_of(owned, [&](const QObject *one) {
                return one->inherits("QQuickNumberAnimation") && moves(row, *one);
            })) {
            fault(row.item, u"does not move so"_s);
        }
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

    void aPressedButtonIsFainter()
    {
        const GalleryPage shown(u"DesignParts"_s);
        QQuickWindow &window = *shown.window();
        window.show();
        QVERIFY(QTest::qWaitForWindowExposed(&window));
        for (const auto &[button, fill] :
             {std::pair("Primary^^", "accent/0.9"), std::pair("Secondary^^", "card"),
              std::pair("Ghost^^", "sunken"), std::pair("Success^^", "success")}) {
            QQuickItem *item = Page::itemAt(*window.contentItem(), button);
            QVERIFY2(item, button);
            const QPoint middle =
                item->mapToScene({item->width() / 2, item->height() / 2}).toPoint();
            QTest::mousePress(&window, Qt::LeftButton, {}, middle);
            auto *ground = item->property("background").value<QQuickItem *>();
            QVERIFY2(isColour(ground->property("color").value<QColor>(), fill), button);
            QTRY_COMPARE(ground->opacity(), 0.92);
            QTRY_COMPARE(item->property("contentItem").value<QQuickItem *>()->opacity(), 0.92);
            QTest::mouseRelease(&window, Qt::LeftButton, {}, middle);
        }
    }

    void pagesAreDrawnAsTheyWereDesigned_data()
    {
        QTest::addColumn<const PageRows *>("rows");
        for (const PageRows &rows : designedPages()) {
            QTest::newRow(rows.page) << &rows;
        }
    }
    void pagesAreDrawnAsTheyWereDesigned()
    {
        QFETCH(const PageRows *, rows);
        const GalleryPage shown(QString::fromLatin1(rows->page), {980, rows->height});
        QVERIFY(shown.window());
        shown.window()->show();
        QVERIFY(QTest::qWaitForWindowExposed(shown.window()));
        QStringList faults;
        const bool isAsDesigned = QTest::qWaitFor([&] {
            faults = Page(*rows).faults(*shown.window()->contentItem());
            return faults.isEmpty();
        });
        QVERIFY2(isAsDesigned, qPrintable(u'\n' + faults.join(u'\n')));
    }
};

}

QTEST_MAIN(veltro::TestAsDesigned)
#include "tst_as_designed.moc"
