// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import Veltro.Design
import Veltro.Library

/// What a right click on a tile offers.
Menu {
    id: root

    property var itemId
    property url file
    required property LibraryScreen screen
    readonly property bool hasFile: String(root.file) !== ""
    readonly property bool many: root.screen.selection.count >= 2

    MenuItem {
        text: qsTr("Show in Finder")
        visible: root.hasFile
        height: root.hasFile ? implicitHeight : 0
        onTriggered: root.screen.reveal(root.file)
    }
    MenuItem {
        text: qsTr("Open")
        visible: root.hasFile
        height: root.hasFile ? implicitHeight : 0
        onTriggered: root.screen.open(root.file)
    }
    MenuItem {
        text: root.many ? root.screen.deleteText : qsTr("Delete")
        destructive: true
        onTriggered: {
            if (root.many)
                root.screen.deleteSelected();
            else
                root.screen.deleteItem(root.itemId);
        }
    }
}
