// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once
#include <QFile>
#include <QObject>
#include <QUrl>
#include <QtQml/qqmlregistration.h>

namespace veltro {

/// Where the screens of other rooms are, by module and name. A screen is loaded when it is first
/// shown, so that the first frame waits for the home screen alone. Any thread.
class ScreenFiles : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON
public:
    using QObject::QObject;

    /// Empty when this program was built without the screen.
    Q_INVOKABLE static QUrl file(const QString &module, const QString &name)
    {
        const QString path = QStringLiteral("/qt/qml/Veltro/%1/%2.qml").arg(module, name);
        return QFile::exists(u':' + path) ? QUrl(QStringLiteral("qrc") + u':' + path) : QUrl();
    }
};

}
