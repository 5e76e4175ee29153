// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import QtQuick.Templates as T
import Veltro.Design

/// One tab: icon, title, and a number when there is one to show. Up and down move the selection.
T.TabButton {
    id: root

    required property string symbol
    required property int badge
    signal stepped(int by)

    implicitHeight: 34
    checkable: false
    hoverEnabled: true
    focusPolicy: Qt.TabFocus
    Accessible.role: Accessible.PageTab
    Accessible.name: root.badge > 0 ? qsTr("%1, %2 active").arg(root.text).arg(root.badge) : root.text
    Accessible.selected: root.checked
    Accessible.onPressAction: root.clicked()
    Keys.onUpPressed: root.stepped(-1)
    Keys.onDownPressed: root.stepped(1)

    contentItem: Item {
        Symbol {
            id: icon
            x: 9
            anchors.verticalCenter: parent.verticalCenter
            name: root.symbol
            size: 14
            color: root.checked ? Theme.accent : Theme.inkSecondary
        }
        Label {
            anchors.left: icon.right
            anchors.leftMargin: 9
            anchors.verticalCenter: parent.verticalCenter
            text: root.text
            font.weight: root.checked ? Font.DemiBold : Font.Medium
            Accessible.ignored: true
        }
        Rectangle {
            objectName: "badge"
            anchors.right: parent.right
            anchors.rightMargin: 9
            anchors.verticalCenter: parent.verticalCenter
            visible: root.badge > 0
            width: Math.max(height, number.implicitWidth + 12)
            height: number.implicitHeight + 4
            radius: height / 2
            antialiasing: true
            color: Theme.accent

            Label {
                id: number
                anchors.centerIn: parent
                text: root.badge
                color: "#FFFFFF"
                font.pixelSize: 11
                font.weight: Font.Bold
                Accessible.ignored: true
            }
        }
    }
    background: Surface {
        radius: 8
        color: root.checked ? Theme.pressed : root.hovered ? Theme.hover : "transparent"

        FocusRing {
            shown: root.visualFocus
            inset: 0
            radius: 8
        }
    }
}
