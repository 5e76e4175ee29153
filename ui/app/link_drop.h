// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once
#include <QList>
#include <QObject>
#include <QUrl>
#include <QtQml/qqmlregistration.h>

namespace veltro {

/// What a drop on the window carries. Any thread.
class LinkDrop : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON
public:
    using QObject::QObject;

    /// The first address of something elsewhere, or the web link that the text is; empty where
    /// there is neither, as in files and pictures.
    Q_INVOKABLE static QUrl firstLink(const QList<QUrl> &addresses, const QString &text);
};

}
