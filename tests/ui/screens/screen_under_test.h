// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once
#include <QMetaMethod>
#include <QQuickItem>
#include <QQuickView>
#include <QVariantMap>

#include <functional>

namespace veltro {

using ItemTest = std::function<bool(const QQuickItem &)>;
/// The items from that one down, itself first, that pass.
[[nodiscard]] QList<QQuickItem *> itemsWhere(QQuickItem &above, const ItemTest &test);

/// A screen of the program, shown in a window of its own and driven as a person does. A name that
/// is asked for and not there ends the test.
class ScreenUnderTest {
public:
    ScreenUnderTest(const char *file, const QVariantMap &properties);

    [[nodiscard]] QQuickItem *root() const { return m_view.rootObject(); }
    [[nodiscard]] QQuickView *window() const { return &m_view; }
    /// Returns when the screen has taken the size.
    void resize(QSize size);

    /// The items, in the window or over it, that pass.
    [[nodiscard]] QList<QQuickItem *> items(const ItemTest &test) const
    {
        return itemsWhere(*m_view.contentItem(), test);
    }
    /// The first item of this object name.
    [[nodiscard]] QQuickItem *named(const char *name) const
    {
        return named(m_view.contentItem(), name);
    }
    [[nodiscard]] static QQuickItem *named(QQuickItem *above, const char *name);
    /// The first item that is seen and has this text; null when there is none.
    [[nodiscard]] QQuickItem *withText(const char *text) const;

    /// The signal of the screen's own of this name.
    [[nodiscard]] QMetaMethod signalNamed(const char *name) const;

    void click(QQuickItem *item, Qt::MouseButton button = Qt::LeftButton) const;

private:
    mutable QQuickView m_view;
};

}
