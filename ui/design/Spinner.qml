// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
pragma ComponentBehavior: Bound
import QtQuick
import Veltro.Design

/// Twelve spokes that fade round, for work whose end is not known. Stands still while hidden.
Item {
    id: root

    property color color: Theme.inkTertiary
    property bool running: true

    implicitWidth: 16
    implicitHeight: 16
    Accessible.role: Accessible.Indicator
    Accessible.name: qsTr("Working")

    Item {
        id: wheel
        anchors.fill: parent

        property int turn: 0

        Timer {
            interval: 84
            repeat: true
            running: root.running && root.visible && root.Window.visibility !== Window.Minimized
            onTriggered: wheel.turn = (wheel.turn + 1) % 12
        }
        Repeater {
            model: root.visible ? 12 : 0
            delegate: Rectangle {
                id: spoke

                required property int index
                readonly property real unit: root.width / 16

                x: (root.width - width) / 2
                y: 0
                width: Math.max(1.2, 1.5 * spoke.unit)
                height: 4.2 * spoke.unit
                radius: width / 2
                antialiasing: true
                color: root.color
                opacity: 0.2 + 0.8 * ((spoke.index - wheel.turn + 11) % 12) / 11
                transform: Rotation {
                    origin.x: 0.75 * spoke.unit
                    origin.y: root.height / 2
                    angle: spoke.index * 30
                }
            }
        }
    }
}
