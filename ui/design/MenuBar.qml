// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
pragma ComponentBehavior: Bound
import QtQuick
import QtQuick.Templates as T
import Veltro.Design

/// The menus of a window, in a row along its top edge.
T.MenuBar {
    id: root

    implicitWidth: 200
    implicitHeight: 30
    leftPadding: 8
    font.family: Theme.family
    font.pixelSize: 13
    Accessible.role: Accessible.MenuBar
    Accessible.name: qsTr("Menus")

    delegate: T.MenuBarItem {
        id: entry

        implicitWidth: title.implicitWidth + 20
        implicitHeight: 24
        hoverEnabled: true
        Accessible.role: Accessible.MenuItem
        Accessible.name: menu ? menu.title : text

        contentItem: Text {
            id: title
            text: entry.menu ? entry.menu.title : entry.text
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
