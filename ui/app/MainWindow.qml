// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
pragma ComponentBehavior: Bound
import QtQuick
import QtQuick.Templates as T
import Veltro.App
import Veltro.Design
import Veltro.Home
import Veltro.Types

/// The one main window: menus along the top, the sidebar, the selected screen, and the banners,
/// sheets and alerts over it.
T.ApplicationWindow {
    id: root

    required property MacAppStore store
    required property HomeModel home
    required property WindowMemory memory
    required property UpdateManager updates
    /// Set when the first frame is on the screen: what it did not show is made then.
    property bool isShown: false
    property bool mayClose: false

    title: qsTr("Veltro")
    color: Theme.page
    minimumWidth: 980
    minimumHeight: 680
    font.family: Theme.family
    font.pixelSize: 13

    Component.onCompleted: root.memory.restore(root)
    onActiveChanged: if (root.active)
        root.home.becomeActive()
    onClosing: close => {
        close.accepted = root.mayClose || root.store.activeDownloads.activeCount === 0;
        if (close.accepted)
            root.leave();
        else
            sheets.askBeforeClosing();
    }

    function leave() {
        root.memory.maximized = root.visibility === Window.Maximized;
        if (root.visibility === Window.Windowed) {
            root.memory.width = root.width;
            root.memory.height = root.height;
        }
        root.memory.save();
        Qt.quit();
    }

    menuBar: WindowMenus {
        id: menus
        visible: root.visibility !== Window.FullScreen
        store: root.store
        onSettingsRequested: {
            settings.show();
            settings.requestActivate();
        }
        onAboutRequested: sheets.showAbout()
        onUpdatesRequested: root.updates.checkForUpdates()
        onQuitRequested: root.close()
    }
    WindowKeys {
        store: root.store
        home: root.home
        enabled: !sheets.open
        onMenusRequested: menus.openFirst()
        onQuitRequested: root.close()
    }
    Sidebar {
        id: sidebar
        objectName: "sidebar"
        width: root.memory.sidebarWidth
        height: parent.height
        selection: root.store.selectedTab
        activeBadge: root.store.activeDownloads.activeCount
        engineReady: root.store.engineReady
        onSelected: tab => root.store.selectedTab = tab
    }
    Item {
        anchors.left: sidebar.right
        anchors.right: parent.right
        height: parent.height
        clip: true

        TabScreens {
            anchors.fill: parent
            store: root.store
            home: root.home
        }
        BannerStack {
            width: parent.width
            store: root.store
        }
    }
    SidebarDivider {
        x: sidebar.width - width / 2
        height: parent.height
        memory: root.memory
    }
    WindowDrop {
        anchors.fill: parent
        enabled: !sheets.open
        onLinkDropped: link => root.store.beginLink(link)
    }
    WindowSheets {
        id: sheets
        store: root.store
        updates: root.updates
        isDue: root.isShown
        onCloseConfirmed: {
            root.mayClose = true;
            root.close();
        }
        onCloseSettled: if (!root.mayClose)
            root.updates.stay()
    }
    LazySettings {
        id: settings
        store: root.store
    }
}
