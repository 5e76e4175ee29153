// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once
#include "platform/defaults_store.h"

#include <QObject>
#include <QtQml/qqmlregistration.h>

#include <memory>

namespace veltro {

class ModelContainer;
class Workspace;

/// What the library's screen works with: the store's container, once it is open, and the desktop.
/// One for the life of the window. Main thread.
class LibraryServices : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("the program makes one")

public:
    /// @param workspace outlives this.
    explicit LibraryServices(Workspace &workspace, DefaultsStore defaults = {},
                             QObject *parent = nullptr);

    /// Null until the store is open, and when it cannot be opened.
    [[nodiscard]] const std::shared_ptr<ModelContainer> &container() const { return m_container; }
    void setContainer(std::shared_ptr<ModelContainer> container);
    [[nodiscard]] Workspace &workspace() const { return m_workspace; }
    [[nodiscard]] const DefaultsStore &defaults() const { return m_defaults; }

Q_SIGNALS:
    void containerChanged();

private:
    Workspace &m_workspace;
    const DefaultsStore m_defaults;
    std::shared_ptr<ModelContainer> m_container;
};

}
