// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
pragma ComponentBehavior: Bound
import QtQuick
import QtQuick.Templates as T
import Veltro.Design

/// The menus of a window, in a row along its top edge.
T.MenuBar {
    id: root

    function openFirst() {
        const first = root.itemAt(0) as T.MenuBarItem;
        if (first)
            first.triggered();
    }

    implicitWidth: 200
    implicitHeight: 30
    leftPadding: 8
    font.family: Theme.family
    font.pixelSize: 13
    Accessible.role: Accessible.MenuBar
    Accessible.name: qsTr("Menus")

    delegate: T.MenuBarItem {
        id: entry

        /// The title without the mark of the letter that opens the menu together with Alt.
        readonly property string caption: (entry.menu ? entry.menu.title : entry.text).replace(/&(.)/, "$1")

        implicitWidth: title.implicitWidth + 20
        implicitHeight: 24
        hoverEnabled: true
        // Its own role would be a menu bar's, whatever is said here: its text speaks for it.
        Accessible.ignored: true

        contentItem: Text {
            id: title
            text: entry.caption
            Accessible.role: Accessible.MenuItem
            Accessible.name: entry.caption
            Accessible.onPressAction: entry.triggered()
            textFormat: Text.PlainText
            font: root.font
            color: Theme.ink
            horizontalAlignment: Text.AlignHCenter
            verticalAlignment: Text.AlignVCenter
        }
        background: Surface {
            radius: 6
            color: entry.down || entry.highlighted ? Theme.pressed : entry.hovered ? Theme.hover : "transparent"
        }
    }
    contentItem: Row {
        spacing: 2
        topPadding: 3

        Repeater {
            model: root.contentModel
        }
    }
    background: Rectangle {
        color: Theme.sidebar

        HairlineDivider {
            anchors.bottom: parent.bottom
        }
    }
}
