// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import Veltro.Design

/// Says that the machine is offline.
Item {
    implicitWidth: ground.width + 24
    implicitHeight: ground.height + 6

    Rectangle {
        id: ground
        objectName: "offlineGround"
        x: 12
        y: 6
        width: row.implicitWidth + 32
        height: row.implicitHeight + 20
        radius: 10
        antialiasing: true
        color: Theme.ink
        Accessible.role: Accessible.AlertMessage
        Accessible.name: caption.text

        Row {
            id: row
            anchors.centerIn: parent
            spacing: 8

            Symbol {
                anchors.verticalCenter: parent.verticalCenter
                name: "globe.slash"
                size: 13
                weight: Font.DemiBold
                color: "#FFFFFF"
            }
            Label {
                id: caption
                text: qsTr("You're offline. Queued downloads will resume.")
                color: "#FFFFFF"
                font.weight: Font.DemiBold
                Accessible.ignored: true
            }
        }
    }
}
