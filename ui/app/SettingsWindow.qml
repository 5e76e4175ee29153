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

    // Made anew each time it is shown: it begins at its top, on its first control.
    onVisibleChanged: {
        if (root.visible)
            screen.load();
        else
            screen.setSource("");
    }

    Shortcut {
        sequences: ["Escape", "Ctrl+W"]
        onActivated: root.close()
    }
    ButtonScope {
        anchors.fill: parent
        focus: true

        Loader {
            id: screen
            anchors.fill: parent
            focus: true
            onLoaded: (screen.item as Item).focus = true

            function load() {
                screen.setSource(ScreenFiles.file("Settings", "SettingsMacView"), {
                    "store": root.store
                });
            }
        }
    }
}
