// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once
#include <QObject>
#include <QtQml/qqmlregistration.h>

class QJSEngine;
class QQmlEngine;

namespace veltro {

/// What the user's hand was on last, in any window. Who came by a key sees where the focus is,
/// whichever way it got there: a tab that opens, a sheet, a menu that closes, a window that is
/// active again. Controls alone would show it after the Tab key only. Main thread.
class LastInput : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON
public:
    /// The one of the application object, with which it ends; it looks on from the first call.
    static LastInput &instance();
    /// For the QML engine.
    static LastInput *create(QQmlEngine *engine, QJSEngine *scripts);

    /// Neither was it before the first input.
    Q_INVOKABLE [[nodiscard]] bool isKey() const { return m_isKey; }

    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    explicit LastInput(QObject *parent);
    void showFocus(QObject *focused) const;

    bool m_isKey = false;
};

}
