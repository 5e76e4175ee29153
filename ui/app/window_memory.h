// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once
#include "platform/defaults_store.h"

#include <QObject>
#include <QWindow>
#include <QtQml/qqmlregistration.h>

namespace veltro {

/// How the user left the main window. Read when it is made, written by save(). Main thread.
class WindowMemory : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("The program makes one.")
    Q_PROPERTY(int width MEMBER m_width NOTIFY changed)
    Q_PROPERTY(int height MEMBER m_height NOTIFY changed)
    Q_PROPERTY(bool maximized MEMBER m_maximized NOTIFY changed)
    Q_PROPERTY(int sidebarWidth READ sidebarWidth WRITE setSidebarWidth NOTIFY changed)
public:
    static constexpr int narrowestSidebar = 220;
    static constexpr int usualSidebar = 240;
    static constexpr int widestSidebar = 280;

    explicit WindowMemory(DefaultsStore store = DefaultsStore(), QObject *parent = nullptr);

    [[nodiscard]] int sidebarWidth() const { return m_sidebarWidth; }
    /// Keeps it within the limits.
    void setSidebarWidth(int width);
    Q_INVOKABLE void save() const;
    /// Gives the window its size, as far as the screen has room for it and a usual frame.
    Q_INVOKABLE void restore(QWindow *window) const;
    /// Makes the window and its frame lie within the screen, as far as its least size allows. What
    /// the frame needs is known when the window is shown.
    static void keepOnScreen(QWindow &window);

Q_SIGNALS:
    void changed();

private:
    const DefaultsStore m_store;
    int m_width = 1120;
    int m_height = 760;
    bool m_maximized = false;
    int m_sidebarWidth = usualSidebar;
};

}
