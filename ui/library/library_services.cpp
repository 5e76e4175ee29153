// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/library/library_services.h"

#include <utility>

namespace veltro {

LibraryServices::LibraryServices(Workspace &workspace, DefaultsStore defaults, QObject *parent)
    : QObject(parent), m_workspace(workspace), m_defaults(std::move(defaults))
{}

void LibraryServices::setContainer(std::shared_ptr<ModelContainer> container)
{
    if (m_container != container) {
        m_container = std::move(container);
        Q_EMIT containerChanged();
    }
}

}
