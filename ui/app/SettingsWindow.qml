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
    Loader {
        id: screen
        anchors.fill: parent
        focus: true
        // As in the main window's tab.
        Keys.onReturnPressed: screen.pressFocused()
        Keys.onEnterPressed: screen.pressFocused()
        onLoaded: (screen.item as Item).focus = true

        function pressFocused() {
            const button = root.activeFocusItem as T.AbstractButton;
            if (button && button.enabled)
                button.clicked();
        }
        function load() {
            screen.setSource(ScreenFiles.file("Settings", "SettingsMacView"), {
                "store": root.store
            });
        }
    }
}
