// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once
#include "platform/defaults_store.h"

#include <QObject>
#include <QtQml/qqmlregistration.h>

#include <memory>

class QJSEngine;
class QQmlEngine;

namespace veltro {

class ModelContainer;
class Workspace;

/// What the library's screen works with: the store's container, once it is open, and the desktop.
/// One for the life of the program. Main thread.
class LibraryServices : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON

public:
    /// @param workspace outlives this.
    explicit LibraryServices(Workspace &workspace, DefaultsStore defaults = {},
                             QObject *parent = nullptr);

    /// Null until the store is open, and when it cannot be opened.
    [[nodiscard]] const std::shared_ptr<ModelContainer> &container() const { return m_container; }
    void setContainer(std::shared_ptr<ModelContainer> container);
    [[nodiscard]] Workspace &workspace() const { return m_workspace; }
    [[nodiscard]] const DefaultsStore &defaults() const { return m_defaults; }

    /// For the QML engine, which asks for the object that setLibraryServices() was given.
    static LibraryServices *create(QQmlEngine *engine, QJSEngine *scripts);

Q_SIGNALS:
    void containerChanged();

private:
    Workspace &m_workspace;
    const DefaultsStore m_defaults;
    std::shared_ptr<ModelContainer> m_container;
};

/// What the singleton LibraryServices of QML engines stands for; set before an engine loads its
/// first file, and outlives the engine.
void setLibraryServices(LibraryServices *services);

}
