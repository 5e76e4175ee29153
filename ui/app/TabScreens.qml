// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
pragma ComponentBehavior: Bound
import QtQuick
import Veltro.App
import Veltro.Design
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
    // Home has its own use for Return.
    ButtonScope {
        anchors.fill: parent
        focus: true

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
            onFileChanged: other.load()
            Component.onCompleted: other.load()
            onLoaded: (other.item as Item).forceActiveFocus()

            function load() {
                other.setSource(other.file, {
                    "store": root.store
                });
            }
        }
    }
}
