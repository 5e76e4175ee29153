// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once
#include "tests/ui/library/library_fixture.h"
#include "tests/ui/screens/screen_under_test.h"
#include "ui/library/library_screen.h"

#include <QTest>

#include <memory>

namespace veltro {

/// The library screen in a window, driven by pointer and keys, over a real store and real files.
/// Each test function begins with an empty library and shows it when it wants to.
class LibraryScreenTest : public QObject {
    Q_OBJECT

protected:
    static constexpr int patience = 30'000; // milliseconds

    void show();
    /// An item with a file that plays.
    [[nodiscard]] DownloadItem film(const QString &title);
    void saveTitles(const QStringList &titles);
    /// Saves that many items with numbers for titles, from 0 on.
    std::vector<DownloadItem> saveNumbers(int count, qint64 bytes = 0);
    [[nodiscard]] LibraryScreen *screen() const
    {
        return m_view->root()->property("screen").value<LibraryScreen *>();
    }
    [[nodiscard]] QQuickView *window() const { return m_view->window(); }
    /// What is seen of that type, whose name may be cut off at its end.
    [[nodiscard]] QList<QQuickItem *> all(const char *type) const;
    [[nodiscard]] QQuickItem *first(const char *type) const { return all(type).value(0); }
    [[nodiscard]] QQuickItem *tile(const QString &title) const;
    [[nodiscard]] QQuickItem *shownText(const QString &text) const;
    [[nodiscard]] QQuickItem *button(const QString &text) const;
    [[nodiscard]] static QPoint middle(const QQuickItem *item)
    {
        return item->mapToScene(QPointF(item->width() / 2, item->height() / 2)).toPoint();
    }
    void click(const QString &title, Qt::KeyboardModifiers modifiers = Qt::NoModifier)
    {
        QTRY_VERIFY(tile(title));
        QTest::mouseClick(window(), Qt::LeftButton, modifiers, middle(tile(title)));
    }
    void press(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier)
    {
        QTest::keyClick(window(), key, modifiers);
    }
    [[nodiscard]] QStringList chosen() const;

    QString m_red; // a film of four seconds
    std::unique_ptr<LibraryFixture> m_library;
    std::unique_ptr<ScreenUnderTest> m_view;

private Q_SLOTS:
    void initTestCase();
    void init();
    void cleanup();

private:
    [[nodiscard]] QQuickItem *firstWithText(const char *base, const QString &text) const;

    QTemporaryDir m_media;
};

}
