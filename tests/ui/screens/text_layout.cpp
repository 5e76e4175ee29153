// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/ui/screens/text_layout.h"

#include <QQuickItem>
#include <QQuickWindow>

#include <algorithm>
#include <vector>

namespace veltro {
namespace {

constexpr double slack = 1; // of a pixel that a glyph's soft edge needs
constexpr qsizetype shortLength = 20;

struct Seen {
    const QQuickItem *item;
    QRectF box; ///< what is painted, in the window
    QString text;
};

struct Scene {
    QRectF window;
    std::vector<Seen> texts;
    std::vector<Seen> buttons;
    QStringList faults;
};

bool inherits(const QQuickItem &item, const char *type)
{
    return item.inherits(type);
}

/// What comes and goes over the screens, and may cover what is there.
bool floats(const QQuickItem &item)
{
    const QByteArray type = item.metaObject()->className();
    return std::ranges::any_of(
        std::initializer_list<const char *>{"QQuickPopupItem", "BannerSlot", "MacPastePill"},
        [&](const char *name) { return type.startsWith(name); });
}

const QQuickItem *floatingAround(const QQuickItem *item)
{
    while (item && !floats(*item)) {
        item = item->parentItem();
    }
    return item;
}

bool isBelow(const QQuickItem *item, const QQuickItem *above)
{
    return item && (item == above || isBelow(item->parentItem(), above));
}

QRectF paintedBox(const QQuickItem &item)
{
    const double width = item.property("contentWidth").toDouble();
    const double height = item.property("contentHeight").toDouble();
    const auto padding = [&](const char *side) { return item.property(side).toDouble(); };
    const QRectF room = QRectF(QPointF(), item.size())
                            .adjusted(padding("leftPadding"), padding("topPadding"),
                                      -padding("rightPadding"), -padding("bottomPadding"));
    QRectF box(room.topLeft(), QSizeF(width, height));
    const int across = item.property("effectiveHorizontalAlignment").toInt();
    const int down = item.property("verticalAlignment").toInt();
    if (across & Qt::AlignRight) {
        box.moveRight(room.right());
    } else if (across & Qt::AlignHCenter) {
        box.moveLeft(room.left() + (room.width() - width) / 2);
    }
    if (down & Qt::AlignBottom) {
        box.moveBottom(room.bottom());
    } else if (down & Qt::AlignVCenter) {
        box.moveTop(room.top() + (room.height() - height) / 2);
    }
    return item.mapRectToScene(box);
}

bool isWithin(const QRectF &box, const QRectF &frame)
{
    return frame.adjusted(-slack, -slack, slack, slack).contains(box);
}

QString shortened(const QString &text)
{
    return text.size() > 48 ? text.left(48) + u'…' : text;
}

bool scrolls(const QQuickItem &item)
{
    return inherits(item, "QQuickFlickable") &&
           item.property("contentHeight").toDouble() > item.height() + slack;
}

/// What of the box is left by everything around the item that clips.
QRectF leftByClips(const QQuickItem &item, QRectF box)
{
    for (const QQuickItem *above = item.parentItem(); above; above = above->parentItem()) {
        if (above->clip()) {
            box &= above->mapRectToScene(QRectF(QPointF(), above->size()));
        }
    }
    return box;
}

/// Cuts the box to the views that scroll over it, and notes which frame else it leaves.
void fit(Seen &seen, Scene &scene)
{
    const auto leaves = [&](const QString &what) {
        scene.faults.append(QStringLiteral("“%1” leaves %2").arg(shortened(seen.text), what));
    };
    for (const QQuickItem *above = seen.item->parentItem(); above; above = above->parentItem()) {
        const QRectF frame = above->mapRectToScene(QRectF(QPointF(), above->size()));
        if (scrolls(*above)) {
            seen.box &= QRectF(seen.box.x(), frame.y(), seen.box.width(), frame.height());
            if (seen.box.isEmpty()) {
                return;
            }
        }
        const bool isGround = inherits(*above, "QQuickRectangle") ||
                              inherits(*above, "veltro::Surface") ||
                              inherits(*above, "QQuickAbstractButton");
        if ((above->clip() || isGround) && !isWithin(seen.box, frame)) {
            leaves(QString::fromLatin1(above->metaObject()->className()) + u' ' +
                   above->objectName());
            return;
        }
    }
    if (!isWithin(seen.box, scene.window)) {
        leaves(QStringLiteral("the window"));
    }
}

void lookAtText(const QQuickItem &item, Scene &scene)
{
    Seen seen{&item, paintedBox(item), item.property("text").toString()};
    if (inherits(item, "QQuickTextInput")) { // which scrolls in itself
        seen.box &= item.mapRectToScene(QRectF(QPointF(), item.size()));
    }
    if (seen.text.isEmpty() || seen.box.isEmpty()) {
        return;
    }
    fit(seen, scene);
    scene.texts.push_back(seen);
    if (item.property("truncated").toBool() && seen.text.size() < shortLength) {
        scene.faults.append(QStringLiteral("“%1” is cut").arg(seen.text));
    }
}

void look(const QQuickItem &item, double opacity, Scene &scene)
{
    opacity *= item.opacity();
    if (!item.isVisible() || opacity < 0.05) {
        return;
    }
    if (inherits(item, "QQuickText") || inherits(item, "QQuickTextInput")) {
        lookAtText(item, scene);
    } else if (inherits(item, "QQuickAbstractButton")) {
        const QRectF box = item.mapRectToScene(QRectF(QPointF(), item.size()));
        scene.buttons.push_back({&item, leftByClips(item, box), item.property("text").toString()});
    }
    for (const QQuickItem *child : item.childItems()) {
        look(*child, opacity, scene);
    }
}

bool covers(const Seen &one, const Seen &other)
{
    const QRectF shared = one.box.intersected(other.box);
    return shared.width() > slack && shared.height() > slack &&
           floatingAround(one.item) == floatingAround(other.item);
}

void compare(Scene &scene)
{
    for (std::size_t one = 0; one < scene.texts.size(); ++one) {
        const Seen &text = scene.texts[one];
        for (std::size_t other = one + 1; other < scene.texts.size(); ++other) {
            if (covers(text, scene.texts[other])) {
                scene.faults.append(
                    QStringLiteral("“%1” and “%2” overlap")
                        .arg(shortened(text.text), shortened(scene.texts[other].text)));
            }
        }
        for (const Seen &button : scene.buttons) {
            if (!isBelow(text.item, button.item) && covers(text, button)) {
                scene.faults.append(QStringLiteral("“%1” lies over the button “%2”")
                                        .arg(shortened(text.text), shortened(button.text)));
            }
        }
    }
}

}

QStringList textFaults(const QQuickWindow &window)
{
    Scene scene;
    scene.window = QRectF(QPointF(), window.contentItem()->size());
    look(*window.contentItem(), 1, scene);
    compare(scene);
    return scene.faults;
}

}
