// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import QtQuick.Templates as T
import Veltro.App
import Veltro.Design
import Veltro.Types

/// The settings in a window of their own; they edit the same record as the tab.
T.ApplicationWindow {
    id: root

    required property MacAppStore store

    objectName: "settingsWindow"
    title: qsTr("Settings")
    color: Theme.page
    width: 560
    height: 520
    minimumWidth: 560
    maximumWidth: 560
    minimumHeight: 520
    maximumHeight: 520
    font.family: Theme.family
    font.pixelSize: 13

    onVisibleChanged: if (root.visible)
        screen.load();

    Shortcut {
        sequences: ["Escape", "Ctrl+W"]
        onActivated: root.close()
    }
    Loader {
        id: screen
        anchors.fill: parent
        focus: true

        function load() {
            if (!screen.item)
                screen.setSource(ScreenFiles.file("Settings", "SettingsMacView"), {
                    "store": root.store
                });
        }
    }
}
