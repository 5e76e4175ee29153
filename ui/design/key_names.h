// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once
#include <QKeySequence>
#include <QObject>
#include <QtQml/qqmlregistration.h>

namespace veltro {

/// How keys are written in menus. Main thread.
class KeyNames : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON
public:
    using QObject::QObject;

    /// Keys in the words of the desktop's language.
    Q_INVOKABLE static QString text(const QString &keys)
    {
        return QKeySequence(keys, QKeySequence::PortableText).toString(QKeySequence::NativeText);
    }
};

}
