// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import QtQuick.Templates as T
import Veltro.Design

/// A row that is on or off. It shows what it is told, and announces what the user wants.
T.CheckBox {
    id: root

    property bool isOn: false
    checked: root.isOn
    nextCheckState: () => root.checkState

    signal switched(on: bool)

    implicitHeight: 44
    height: implicitHeight
    focusPolicy: Qt.StrongFocus
    Accessible.role: Accessible.CheckBox
    Accessible.name: text
    Accessible.onPressAction: root.clicked()
    Accessible.onToggleAction: root.clicked()
    onClicked: root.switched(!root.isOn)

    RowRule {}
    contentItem: Item {
        Label {
            anchors.left: parent.left
            anchors.leftMargin: 16
            anchors.right: track.left
            anchors.rightMargin: 12
            anchors.verticalCenter: parent.verticalCenter
            text: root.text
            elide: Text.ElideRight
            Accessible.ignored: true
        }
        Surface {
            id: track
            anchors.right: parent.right
            anchors.rightMargin: 16
            anchors.verticalCenter: parent.verticalCenter
            width: 38
            height: 22
            radius: 11
            cornerExponent: 2
            color: root.isOn ? Theme.accent : Theme.hairline

            Behavior on color {
                ColorAnimation {
                    duration: Theme.quick
                }
            }
            FocusRing {
                shown: root.visualFocus
                radius: 14
            }
            Surface {
                x: root.isOn ? 18 : 2
                y: 2
                width: 18
                height: 18
                radius: 9
                cornerExponent: 2
                color: "#FFFFFF"
                shadowColor: Qt.rgba(0, 0, 0, 0.18)
                shadowBlur: 3
                shadowOffsetY: 1

                Behavior on x {
                    NumberAnimation {
                        duration: Theme.quick
                        easing.type: Easing.OutCubic
                    }
                }
            }
        }
    }
}
