// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/app/program.h"

#include "coordination/detach.h"
#include "library/completion_notifier.h"
#include "library/cookie_file.h"
#include "library/model_container.h"
#include "library/search_indexer.h"
#include "platform/serial_queue.h"

#include <QGuiApplication>
#include <QQmlComponent>
#include <QQuickWindow>

#include <malloc.h>

namespace veltro {
namespace {

constexpr int recentItems = 6;

bool isProgramActive()
{
    return QGuiApplication::applicationState() == Qt::ApplicationActive;
}

QUrl mainWindowFile()
{
    return QUrl(QStringLiteral("qrc:/qt/qml/Veltro/App/MainWindow.qml"));
}

/// What the start has let go of lies between what stays. It takes some milliseconds.
void giveBackMemory()
{
    storeQueue().async([] { malloc_trim(0); });
}

MacPasteWatcher::Delivery clipboardDelivery()
{
    return QGuiApplication::platformName().startsWith(QStringLiteral("wayland"))
               ? MacPasteWatcher::Delivery::afterActivation
               : MacPasteWatcher::Delivery::atOnce;
}

}

Program::Program()
    : m_store({.engine = m_engine,
               .storage = m_storage,
               .notifier = CompletionNotifier::shared(),
               .workspace = m_workspace,
               .pasteboard = m_pasteboard,
               .isApplicationActive = isProgramActive})
    , m_home(m_store, m_pasteboard, clipboardDelivery())
    , m_library(m_workspace)
    , m_sites(m_engine)
    , m_desktop(m_workspace, m_pasteboard)
{
    m_recents.setLimit(recentItems);
    m_home.setRecents(&m_recents);
    setDesktop(&m_desktop);
    setLibraryServices(&m_library);
    setLoggedInSites(&m_sites);
    m_qml.addImportPath(QStringLiteral(":/qt/qml"));
    // Plugins are made known to an engine on this thread: with theirs loaded, what follows need not
    // wait for it.
    QQmlComponent(&m_qml).setData("import QtQuick\nimport QtQuick.Templates as T\nT.Control {}",
                                  QUrl());
    // A child of the engine.
    new QQmlComponent(&m_qml, mainWindowFile(), QQmlComponent::Asynchronous, &m_qml);
}

Program::~Program()
{
    setDesktop(nullptr);
    setLibraryServices(nullptr);
    setLoggedInSites(nullptr);
}

bool Program::start()
{
    // The drawing is made ready while another thread reads what the window is made of.
    const QQuickWindow drawing;
    m_qml.setInitialProperties({
        {QStringLiteral("store"), QVariant::fromValue(&m_store)},
        {QStringLiteral("home"), QVariant::fromValue(&m_home)},
        {QStringLiteral("memory"), QVariant::fromValue(&m_memory)},
        {QStringLiteral("updates"), QVariant::fromValue(&m_updates)},
    });
    m_qml.load(mainWindowFile());
    const QList<QObject *> roots = m_qml.rootObjects();
    m_window = roots.isEmpty() ? nullptr : qobject_cast<QQuickWindow *>(roots.constFirst());
    if (!m_window) {
        return false;
    }
    connect(m_window, &QQuickWindow::frameSwapped, this, &Program::afterFirstFrame,
            Qt::QueuedConnection);
    m_window->setVisibility(m_memory.property("maximized").toBool() ? QWindow::Maximized
                                                                    : QWindow::Windowed);
    return true;
}

void Program::afterFirstFrame()
{
    if (m_hasBegun) {
        return;
    }
    m_hasBegun = true;
    disconnect(m_window, &QQuickWindow::frameSwapped, this, nullptr);
    m_window->setProperty("isShown", true);
    WindowMemory::keepOnScreen(*m_window);
    connect(&m_store, &MacAppStore::engineReadyChanged, this, giveBackMemory);
    m_store.beginEngine();
    detach(openLibrary(this), QStringLiteral("the library"));
}

QCoro::Task<void> Program::openLibrary(QPointer<Program> self)
{
    const QPointer<Program> program = std::move(self);
    std::shared_ptr<ModelContainer> container = co_await makeContainerInBackground();
    removeCookieLeavingsInBackground();
    if (program) {
        if (container) {
            program->m_searchRepair = indexWhatIsMissingInBackground(container);
        }
        program->m_recents.setContainer(container);
        program->m_library.setContainer(container);
        program->m_sites.setContainer(std::move(container));
    }
}

void Program::activate(const QString &token)
{
    if (!token.isEmpty()) {
        qputenv("XDG_ACTIVATION_TOKEN", token.toUtf8());
    }
    if (m_window->visibility() == QWindow::Minimized) {
        m_window->showNormal();
    }
    m_window->raise();
    m_window->requestActivate();
}

void Program::showItem(const QUuid &id)
{
    m_library.ask({.item = id, .search = {}});
    m_store.setSelectedTab(MacTab::library);
}

void Program::searchLibrary(const QString &text)
{
    m_library.ask({.item = {}, .search = text});
    m_store.setSelectedTab(MacTab::library);
}

}
