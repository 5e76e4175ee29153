// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once
#include <QJSEngine>
#include <QJSValue>
#include <QObject>
#include <QUrl>
#include <QtQml/qqmlregistration.h>

class QQmlEngine;

namespace veltro {

class Pasteboard;
class Workspace;

/// The user's desktop for the screens: files and pages in other programs, and the pasteboard.
/// Main thread.
class Desktop : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON
public:
    /// Both outlive this object.
    Desktop(Workspace &workspace, Pasteboard &pasteboard, QObject *parent = nullptr);

    Q_INVOKABLE bool open(const QUrl &file);
    Q_INVOKABLE void reveal(const QUrl &file);
    Q_INVOKABLE bool openWebPage(const QUrl &page);
    Q_INVOKABLE void copy(const QString &text);
    /// Calls the function with the links, or whatever text, that the pasteboard holds; not at all
    /// where it holds none.
    Q_INVOKABLE void readPasteboard(const QJSValue &then);

    [[nodiscard]] Pasteboard &pasteboard() { return m_pasteboard; }

    /// For the QML engine, which asks for the object that setDesktop() was given.
    static Desktop *create(QQmlEngine *engine, QJSEngine *scripts);

private:
    Workspace &m_workspace;
    Pasteboard &m_pasteboard;
};

/// What the singleton Desktop of a QML engine stands for, and text fields paste from; set before
/// the engine loads its first file, and outlives the engine.
void setDesktop(Desktop *desktop);

}
