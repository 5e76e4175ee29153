// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once
#include "platform/defaults_store.h"

#include <QObject>
#include <QUuid>
#include <QtQml/qqmlregistration.h>

#include <memory>
#include <optional>

class QJSEngine;
class QQmlEngine;

namespace veltro {

class ModelContainer;
class Workspace;

/// What somebody outside the library's screen wants to see in it: one item, or what a search finds.
struct LibraryRequest {
    std::optional<QUuid> item;
    QString search;
};

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
    /// Kept until a screen takes it, which may yet have to be made.
    void ask(LibraryRequest request);
    [[nodiscard]] std::optional<LibraryRequest> takeRequest();
    [[nodiscard]] Workspace &workspace() const { return m_workspace; }
    [[nodiscard]] const DefaultsStore &defaults() const { return m_defaults; }

    /// For the QML engine, which asks for the object that setLibraryServices() was given.
    static LibraryServices *create(QQmlEngine *engine, QJSEngine *scripts);

Q_SIGNALS:
    void containerChanged();
    void asked();

private:
    Workspace &m_workspace;
    const DefaultsStore m_defaults;
    std::shared_ptr<ModelContainer> m_container;
    std::optional<LibraryRequest> m_request;
};

/// What the singleton LibraryServices of QML engines stands for; set before an engine loads its
/// first file, and outlives the engine.
void setLibraryServices(LibraryServices *services);

}
