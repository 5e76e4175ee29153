// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once
#include "platform/updater.h"
#include "tests/coordination/coordinator_bench.h"
#include "tests/ui/screens/screen_under_test.h"
#include "ui/app/window_memory.h"
#include "ui/design/appearance.h"
#include "ui/home/home_model.h"
#include "ui/library/library_services.h"
#include "ui/settings/logged_in_sites.h"
#include "ui/types/desktop.h"

#include <QQmlApplicationEngine>
#include <QQuickItem>
#include <QQuickWindow>
#include <QTest>

namespace veltro {

/// The main window over a coordinator with the real engine, the test site for the web, and a
/// desktop that only keeps what it is told. 980 by 680, light, in a home of its own.
class WindowBench : public CoordinatorBench {
public:
    WindowBench()
        : m_memory(DefaultsStore(home.path(QStringLiteral("window.ini"))))
        , m_home(store(), pasteboard, MacPasteWatcher::Delivery::atOnce)
        , m_library(workspace, DefaultsStore(home.path(QStringLiteral("library.ini"))))
        , m_sites(engine)
        , m_updates(home.path(QStringLiteral("no-bundle")).toStdString(),
                    DefaultsStore(home.path(QStringLiteral("updates.ini"))))
        , m_desktop(workspace, pasteboard)
    {
        m_memory.setProperty("width", 980);
        m_memory.setProperty("height", 680);
        applyAppearance();
        setDesktop(&m_desktop);
        setLibraryServices(&m_library);
        setLoggedInSites(&m_sites);
        m_qml.addImportPath(QStringLiteral(":/qt/qml"));
        m_qml.setInitialProperties({
            {QStringLiteral("store"), QVariant::fromValue(&store())},
            {QStringLiteral("home"), QVariant::fromValue(&m_home)},
            {QStringLiteral("memory"), QVariant::fromValue(&m_memory)},
            {QStringLiteral("updates"), QVariant::fromValue(&m_updates)},
        });
        m_qml.load(QUrl(QStringLiteral("qrc:/qt/qml/Veltro/App/MainWindow.qml")));
        if (m_qml.rootObjects().isEmpty()) {
            qFatal("the main window cannot be loaded");
        }
        m_window = qobject_cast<QQuickWindow *>(m_qml.rootObjects().constFirst());
        m_window->show();
        m_window->setProperty("isShown", true);
    }
    ~WindowBench()
    {
        setDesktop(nullptr);
        setLibraryServices(nullptr);
        setLoggedInSites(nullptr);
    }

    [[nodiscard]] QQuickWindow &window() { return *m_window; }
    [[nodiscard]] HomeModel &homeModel() { return m_home; }
    [[nodiscard]] WindowMemory &memory() { return m_memory; }
    [[nodiscard]] LibraryServices &library() { return m_library; }
    [[nodiscard]] UpdateManager &updates() { return m_updates; }

    /// The item of that name, wherever it is in the window; fails the program when there is none.
    [[nodiscard]] QQuickItem &item(QAnyStringView name)
    {
        const auto isNamed = [&](const QQuickItem &item) { return item.objectName() == name; };
        return given(itemsWhere(*m_window->contentItem(), isNamed).value(0), name);
    }
    /// A sheet or an alert. They are made in spare time.
    [[nodiscard]] QObject &popup(QAnyStringView name)
    {
        const auto find = [&] { return m_window->findChild<QObject *>(name.toString()); };
        (void)QTest::qWaitFor([&] { return find() != nullptr; });
        return given(find(), name);
    }
    /// Whether the item of that name can be seen; it may belong to a menu.
    [[nodiscard]] bool isShown(QAnyStringView name) const
    {
        const auto *found = m_window->findChild<QQuickItem *>(name.toString());
        return found != nullptr && found->isVisible() && found->window() != nullptr;
    }
    /// By pointer, from the menu bar on.
    void clickMenu(int menu, QAnyStringView line)
    {
        QQuickItem *entry = nullptr;
        QQuickItem *bar = m_window->property("menuBar").value<QQuickItem *>();
        QMetaObject::invokeMethod(bar, "itemAt", Q_RETURN_ARG(QQuickItem *, entry),
                                  Q_ARG(int, menu));
        clickItem(*entry);
        if (!QTest::qWaitFor([this, &line] { return isShown(line); })) {
            qFatal("the menu does not open");
        }
        clickItem(*m_window->findChild<QQuickItem *>(line.toString()));
    }
    void click(QAnyStringView name) { clickItem(item(name)); }

private:
    template <typename Object>
    static Object &given(Object *found, QAnyStringView name)
    {
        if (found == nullptr) {
            qFatal("there is no %s", qPrintable(name.toString()));
        }
        return *found;
    }
    void clickItem(const QQuickItem &target)
    {
        const QPointF middle = target.mapToScene({target.width() / 2, target.height() / 2});
        QTest::mouseClick(m_window, Qt::LeftButton, Qt::NoModifier, middle.toPoint());
    }

    WindowMemory m_memory;
    HomeModel m_home;
    LibraryServices m_library;
    LoggedInSites m_sites;
    UpdateManager m_updates;
    Desktop m_desktop;
    QQmlApplicationEngine m_qml;
    QPointer<QQuickWindow> m_window;
};

}
