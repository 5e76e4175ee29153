// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import Veltro.Design

/// Says that a download is in the library.
BannerCard {
    id: root

    signal opened
    signal dismissed

    property string savedTitle
    detail: root.savedTitle
    title: qsTr("Saved to your library")
    leading: Rectangle {
        objectName: "savedMark"
        width: 28
        height: 28
        radius: 14
        antialiasing: true
        color: Theme.faded(Theme.success, 0.14)

        Symbol {
            anchors.centerIn: parent
            name: "checkmark"
            size: 11
            weight: Font.Bold
            color: Theme.success
        }
    }
    trailing: [
        CapsuleButton {
            objectName: "openLibrary"
            anchors.verticalCenter: parent.verticalCenter
            text: qsTr("Open")
            horizontalPadding: 14
            verticalPadding: 7
            font.pixelSize: 12
            onClicked: root.opened()
        },
        IconButton {
            objectName: "dismissCompleted"
            anchors.verticalCenter: parent.verticalCenter
            width: 26
            height: 26
            name: "xmark"
            iconSize: 11
            stroke: 2.5
            text: qsTr("Close")
            onClicked: root.dismissed()
        }
    ]
}
