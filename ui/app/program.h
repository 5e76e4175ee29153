// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once
#include "coordination/coordinator.h"
#include "engine/service/yt_dlp_service.h"
#include "library/download_storage.h"
#include "library/library_items_model.h"
#include "platform/pasteboard.h"
#include "platform/updater.h"
#include "platform/workspace.h"
#include "ui/app/window_memory.h"
#include "ui/home/home_model.h"
#include "ui/library/library_services.h"
#include "ui/settings/logged_in_sites.h"
#include "ui/types/desktop.h"

#include <QQmlApplicationEngine>
#include <QQuickWindow>

#include <thread>

namespace veltro {

/// What lives as long as the process: the services, the coordinator over them, and the window.
/// Needs the application object. The window's files are read from the construction on, so that
/// there is time for other things before start(). Main thread.
class Program : public QObject {
    Q_OBJECT
public:
    Program();
    ~Program() override;

    /// Shows the window. The engine and the library are begun when its first frame is on the
    /// screen. False when there is no window to show, which the log explains.
    [[nodiscard]] bool start();
    /// Brings the window to the front, with the desktop's leave where it gave a token.
    void activate(const QString &token);
    /// The library's tab, with that item chosen and playing; without it where it is gone.
    void showItem(const QUuid &id);
    /// The library's tab, searched for that text.
    void searchLibrary(const QString &text);

    [[nodiscard]] MacAppStore &store() { return m_store; }
    [[nodiscard]] HomeModel &home() { return m_home; }
    [[nodiscard]] QQuickWindow *window() const { return m_window; }

private:
    void afterFirstFrame();
    static QCoro::Task<void> openLibrary(QPointer<Program> self);

    YtDlpService m_engine;
    DownloadStorage m_storage;
    DesktopWorkspace m_workspace;
    DesktopPasteboard m_pasteboard;
    MacAppStore m_store;
    LibraryItemsModel m_recents;
    HomeModel m_home;
    WindowMemory m_memory;
    LibraryServices m_library;
    LoggedInSites m_sites;
    UpdateManager m_updates;
    Desktop m_desktop;
    QQmlApplicationEngine m_qml; // ends first, since its objects use all of the above
    QPointer<QQuickWindow> m_window;
    bool m_hasBegun = false;
    std::jthread m_searchRepair; // what a crash has kept from the desktop's search
};

}
