// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import Veltro.Design
import Veltro.Library

/// The library's name, and the field that searches it.
Item {
    id: root

    required property LibraryScreen screen

    function focusSearch() {
        field.forceActiveFocus(Qt.ShortcutFocusReason);
        field.selectAll();
    }

    implicitHeight: names.implicitHeight

    Column {
        id: names
        anchors.left: parent.left
        spacing: 4

        Eyebrow {
            text: qsTr("Saved on this Mac")
            tint: Theme.inkTertiary
        }
        Label {
            text: qsTr("Library")
            font.family: Theme.displayFamily
            font.pixelSize: 38
            font.weight: Font.Bold
            font.letterSpacing: -0.8
            Accessible.role: Accessible.Heading
        }
    }
    Surface {
        objectName: "searchField"
        anchors.right: parent.right
        anchors.bottom: names.bottom
        anchors.bottomMargin: 4
        width: Math.max(120, Math.min(220, root.width - names.width - 16))
        height: field.implicitHeight + 20
        radius: 12
        color: Theme.card
        strokeColor: Theme.hairline
        strokeWidth: 1

        Symbol {
            id: glass
            anchors.left: parent.left
            anchors.leftMargin: 14
            anchors.verticalCenter: parent.verticalCenter
            name: "magnifyingglass"
            size: 14
            color: Theme.inkTertiary
        }
        TextField {
            id: field
            anchors.left: glass.right
            anchors.leftMargin: 8
            anchors.right: parent.right
            anchors.rightMargin: 14
            anchors.verticalCenter: parent.verticalCenter
            framed: false
            placeholderText: qsTr("Search")
            font.pixelSize: 14
            text: root.screen.search
            onTextEdited: root.screen.search = text
            Accessible.searchEdit: true
        }
        FocusRing {
            shown: field.activeFocus
            radius: 15
        }
    }
}
