// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/ui/screens/screen_under_test.h"

#include "ui/design/appearance.h"

#include <QQmlEngine>
#include <QTest>

namespace veltro {

QList<QQuickItem *> itemsWhere(QQuickItem &above, const ItemTest &test)
{
    QList<QQuickItem *> found;
    if (test(above)) {
        found.append(&above);
    }
    const QList<QQuickItem *> children = above.childItems();
    for (QQuickItem *child : children) {
        found += itemsWhere(*child, test);
    }
    return found;
}

ScreenUnderTest::ScreenUnderTest(const char *file, const QVariantMap &properties)
{
    applyAppearance();
    m_view.engine()->addImportPath(QStringLiteral(":/qt/qml"));
    m_view.setResizeMode(QQuickView::SizeRootObjectToView);
    m_view.resize(980, 680);
    m_view.setInitialProperties(properties);
    m_view.setSource(QUrl(QString::fromLatin1(file)));
    if (!m_view.rootObject()) {
        qFatal("%s cannot be shown", file);
    }
    m_view.show();
    m_view.requestActivate();
    if (!QTest::qWaitForWindowActive(&m_view)) {
        qFatal("%s is not shown", file);
    }
}

void ScreenUnderTest::resize(QSize size)
{
    m_view.resize(size);
    if (!QTest::qWaitFor([&] { return root()->size().toSize() == size; })) {
        qFatal("the screen does not take its size");
    }
}

QQuickItem *ScreenUnderTest::named(QQuickItem *above, const char *name)
{
    const auto isNamed = [wanted = QString::fromLatin1(name)](const QQuickItem &item) {
        return item.objectName() == wanted;
    };
    QQuickItem *item = above ? itemsWhere(*above, isNamed).value(0) : nullptr;
    if (!item) {
        qFatal("no item is called %s", name);
    }
    return item;
}

QQuickItem *ScreenUnderTest::withText(const char *text) const
{
    return items([wanted = QString::fromUtf8(text)](const QQuickItem &item) {
               return item.isVisible() && item.property("text") == wanted;
           })
        .value(0);
}

QMetaMethod ScreenUnderTest::signalNamed(const char *name) const
{
    const QMetaObject *type = root()->metaObject();
    for (int index = 0; index < type->methodCount(); ++index) {
        if (type->method(index).name() == name) {
            return type->method(index);
        }
    }
    qFatal("no signal is called %s", name);
}

void ScreenUnderTest::click(QQuickItem *item, Qt::MouseButton button) const
{
    const QPointF centre = item->mapToScene({item->width() / 2, item->height() / 2});
    QTest::mouseClick(&m_view, button, Qt::NoModifier, centre.toPoint());
}

}
