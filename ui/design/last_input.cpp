// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/design/last_input.h"

#include <QGuiApplication>
#include <QJSEngine>
#include <QKeyEvent>
#include <QPointer>

namespace veltro {
namespace {

// Held while the pointer is at work, or while another window is chosen.
bool isHeldKey(int key)
{
    return (key >= Qt::Key_Shift && key <= Qt::Key_ScrollLock) || key == Qt::Key_AltGr ||
           key == Qt::Key_Super_L || key == Qt::Key_Super_R;
}

bool isShown(Qt::FocusReason reason)
{
    return reason == Qt::TabFocusReason || reason == Qt::BacktabFocusReason ||
           reason == Qt::ShortcutFocusReason;
}

}

LastInput &LastInput::instance()
{
    static QPointer<LastInput> one;
    if (!one) {
        one = new LastInput(QCoreApplication::instance());
    }
    return *one;
}

LastInput *LastInput::create(QQmlEngine *, QJSEngine *)
{
    QJSEngine::setObjectOwnership(&instance(), QJSEngine::CppOwnership);
    return &instance();
}

LastInput::LastInput(QObject *parent) : QObject(parent)
{
    QCoreApplication::instance()->installEventFilter(this);
    connect(qGuiApp, &QGuiApplication::focusObjectChanged, this, &LastInput::showFocus);
}

bool LastInput::eventFilter(QObject *watched, QEvent *event)
{
    switch (event->type()) {
    case QEvent::KeyPress:
    case QEvent::ShortcutOverride: // all that is seen of a shortcut
        if (!isHeldKey(static_cast<const QKeyEvent *>(event)->key())) {
            m_isKey = true;
        }
        break;
    case QEvent::MouseButtonPress:
    case QEvent::TouchBegin:
    case QEvent::TabletPress:
        m_isKey = false;
        break;
    default:
        break;
    }
    return QObject::eventFilter(watched, event);
}

void LastInput::showFocus(QObject *focused) const
{
    const QVariant reason = focused ? focused->property("focusReason") : QVariant();
    if (m_isKey && reason.isValid() && !isShown(reason.value<Qt::FocusReason>())) {
        focused->setProperty("focusReason", QVariant::fromValue(Qt::ShortcutFocusReason));
    }
}

}
