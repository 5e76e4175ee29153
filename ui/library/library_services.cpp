// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/library/library_services.h"

#include <QJSEngine>

#include <utility>

namespace veltro {
namespace {

LibraryServices *&servicesOfTheProgram()
{
    static LibraryServices *services = nullptr;
    return services;
}

}

void setLibraryServices(LibraryServices *services)
{
    servicesOfTheProgram() = services;
}

LibraryServices *LibraryServices::create(QQmlEngine *, QJSEngine *)
{
    Q_ASSERT(servicesOfTheProgram() != nullptr);
    QJSEngine::setObjectOwnership(servicesOfTheProgram(), QJSEngine::CppOwnership);
    return servicesOfTheProgram();
}

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

void LibraryServices::ask(LibraryRequest request)
{
    m_request = std::move(request);
    Q_EMIT asked();
}

std::optional<LibraryRequest> LibraryServices::takeRequest()
{
    return std::exchange(m_request, std::nullopt);
}

}
