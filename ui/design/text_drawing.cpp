// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/design/text_drawing.h"

#include <QGuiApplication>
#include <QQuickItem>
#include <QQuickWindow>
#include <QSet>

namespace veltro {
namespace {

using RenderType = QQuickWindow::TextRenderType;

/// At a scale, Qt 6.4 leaves out single letters of what it draws natively with OpenGL.
RenderType typeForScreens()
{
    return qFuzzyCompare(qGuiApp->devicePixelRatio(), 1.0) ? QQuickWindow::NativeTextRendering
                                                           : QQuickWindow::QtTextRendering;
}

/// Sets it for all texts below, whether they belong to an item or only lie in it.
void setRenderType(RenderType type, QObject &object, QSet<QObject *> &visited)
{
    if (visited.contains(&object)) {
        return;
    }
    visited.insert(&object);
    if (object.inherits("QQuickText") || object.inherits("QQuickTextInput") ||
        object.inherits("QQuickTextEdit")) {
        object.setProperty("renderType", static_cast<int>(type));
    }
    const QObjectList children = object.children();
    for (QObject *child : children) {
        setRenderType(type, *child, visited);
    }
    if (const auto *item = qobject_cast<QQuickItem *>(&object)) {
        const QList<QQuickItem *> inside = item->childItems();
        for (QQuickItem *child : inside) {
            setRenderType(type, *child, visited);
        }
    }
}

void follow()
{
    const RenderType type = typeForScreens();
    if (type == QQuickWindow::textRenderType()) {
        return;
    }
    QQuickWindow::setTextRenderType(type);
    QSet<QObject *> visited;
    const QWindowList windows = QGuiApplication::allWindows();
    for (QWindow *window : windows) {
        setRenderType(type, *window, visited);
    }
}

}

void drawTextsAsScreensAllow()
{
    follow();
    for (const auto signal : {&QGuiApplication::screenAdded, &QGuiApplication::screenRemoved}) {
        QObject::connect(qGuiApp, signal, qGuiApp, follow, Qt::QueuedConnection);
    }
}

}
