// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
pragma ComponentBehavior: Bound
import QtQuick
import QtQuick.Templates as T
import Veltro.App
import Veltro.Home
import Veltro.Types

/// The screen of the selected tab. The home screen stays; each other is made when its tab is
/// selected, and what was selected or scrolled in it goes with it.
Item {
    id: root

    required property MacAppStore store
    required property HomeModel home

    HomeMacView {
        objectName: "homeScreen"
        anchors.fill: parent
        visible: shown
        store: root.store
        home: root.home
    }
    Loader {
        id: other

        readonly property url file: {
            switch (root.store.selectedTab) {
            case Tab.Downloads:
                return ScreenFiles.file("Downloads", "DownloadsMacView");
            case Tab.Library:
                return ScreenFiles.file("Library", "LibraryMacView");
            case Tab.Settings:
                return ScreenFiles.file("Settings", "SettingsMacView");
            default:
                return "";
            }
        }

        anchors.fill: parent
        focus: true
        // Home has its own use for Return; elsewhere it presses what has the focus, as Space does.
        Keys.onReturnPressed: other.pressFocused()
        Keys.onEnterPressed: other.pressFocused()
        onFileChanged: other.load()
        Component.onCompleted: other.load()
        onLoaded: (other.item as Item).forceActiveFocus()

        function pressFocused() {
            const button = root.Window.activeFocusItem as T.AbstractButton;
            if (button && button.enabled)
                button.clicked();
        }
        function load() {
            other.setSource(other.file, {
                "store": root.store
            });
        }
    }
}
