// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import Veltro.Design

/// How many links there are, and what to do with them.
Item {
    id: root

    required property int count
    required property string countText
    signal pasteRequested
    signal queueRequested

    implicitHeight: buttons.implicitHeight

    Column {
        anchors.verticalCenter: parent.verticalCenter
        spacing: 3

        Label {
            objectName: "batchCount"
            text: root.countText
            font.weight: Font.DemiBold
        }
        Label {
            text: qsTr("One per line · saved at your default quality")
            color: Theme.inkTertiary
            font.pixelSize: 11
        }
    }
    Row {
        id: buttons
        anchors.right: parent.right
        spacing: 10

        ActionButton {
            objectName: "batchPaste"
            text: qsTr("Paste")
            kind: ActionButton.Secondary
            iconName: "clipboard"
            iconSize: 12
            onClicked: root.pasteRequested()
        }
        ActionButton {
            objectName: "batchQueue"
            text: qsTr("Queue %1").arg(root.count)
            iconName: "arrowRight"
            iconSize: 12
            iconAtEnd: true
            enabled: root.count > 0
            opacity: enabled ? 1 : 0.4
            onClicked: root.queueRequested()
        }
    }
}
