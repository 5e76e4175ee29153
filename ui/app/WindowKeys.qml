// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import Veltro.Home
import Veltro.Types

/// The window's keys, each standing here and nowhere else. None is heard under a sheet or an alert.
Item {
    id: root

    required property MacAppStore store
    required property HomeModel home
    signal menusRequested
    signal quitRequested

    Shortcut {
        sequence: "Ctrl+Shift+V"
        enabled: root.enabled
        onActivated: {
            if (root.store.selectedTab === Tab.Home)
                root.home.pasteAndSave();
            else
                root.store.beginPaste();
        }
    }
    Shortcut {
        sequence: "Ctrl+Shift+B"
        enabled: root.enabled
        onActivated: root.store.showBatchPaste = true
    }
    Shortcut {
        sequence: "Ctrl+2"
        enabled: root.enabled
        onActivated: root.store.selectedTab = Tab.Library
    }
    Shortcut {
        sequence: "Ctrl+3"
        enabled: root.enabled
        onActivated: root.store.selectedTab = Tab.Downloads
    }
    Shortcut {
        sequence: "Ctrl+,"
        enabled: root.enabled
        onActivated: root.store.selectedTab = Tab.Settings
    }
    Shortcut {
        sequence: "F10"
        enabled: root.enabled
        onActivated: root.menusRequested()
    }
    Shortcut {
        sequence: "Ctrl+Q"
        enabled: root.enabled
        onActivated: root.quitRequested()
    }
}
