// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import QtQuick.Templates as T
import Veltro.Design

/// The name of a list with the number of formats of its kind.
T.TabButton {
    id: root

    property int count: 0
    property bool selected: false
    readonly property color foreground: selected ? Theme.ink : Theme.inkTertiary

    implicitHeight: 34
    checkable: false
    horizontalPadding: 12
    focusPolicy: Qt.StrongFocus
    hoverEnabled: true
    Accessible.role: Accessible.PageTab
    Accessible.name: qsTr("%1, %2").arg(root.text).arg(root.count)
    Accessible.selected: root.selected
    Accessible.onPressAction: root.clicked()

    contentItem: Item {
        Label {
            anchors.left: parent.left
            anchors.verticalCenter: parent.verticalCenter
            text: root.text
            color: root.foreground
            font.pixelSize: 13
            font.weight: root.selected ? Font.DemiBold : Font.Medium
            Accessible.ignored: true
        }
        Label {
            anchors.right: parent.right
            anchors.verticalCenter: parent.verticalCenter
            text: root.count
            color: root.foreground
            font.pixelSize: 13
            font.weight: root.selected ? Font.DemiBold : Font.Medium
            Accessible.ignored: true
        }
    }
    background: Surface {
        radius: 8
        color: root.selected ? Theme.card : root.hovered ? Theme.hover : "transparent"
        strokeColor: root.selected ? Theme.hairline : "transparent"
        strokeWidth: 1

        FocusRing {
            shown: root.visualFocus
            radius: 10
            inset: -2
        }
    }
}
