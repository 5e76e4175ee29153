// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import Veltro.Design

/// A site whose cookies are saved.
Item {
    id: root

    required property string host
    required property date updatedAt

    signal removed

    implicitHeight: 54
    height: implicitHeight
    Accessible.role: Accessible.ListItem
    Accessible.name: root.host
    Accessible.description: caption.text

    RowRule {}
    Symbol {
        id: globe
        x: 16
        anchors.verticalCenter: parent.verticalCenter
        name: "globe"
        size: 17
        color: Theme.inkSecondary
    }
    Column {
        anchors.left: globe.right
        anchors.leftMargin: 12
        anchors.right: removeButton.left
        anchors.rightMargin: 12
        anchors.verticalCenter: parent.verticalCenter
        spacing: 2

        Label {
            width: parent.width
            text: root.host
            elide: Text.ElideMiddle
            font.weight: Font.Bold
            Accessible.ignored: true
        }
        RelativeDateLabel {
            id: caption
            date: root.updatedAt
            color: Theme.inkSecondary
            font.pixelSize: 11
            Accessible.ignored: true
        }
    }
    IconButton {
        id: removeButton
        anchors.right: parent.right
        anchors.rightMargin: 12
        anchors.verticalCenter: parent.verticalCenter
        name: "trash"
        iconSize: 17
        stroke: 1.8
        tint: Theme.danger
        text: qsTr("Remove %1").arg(root.host)
        onClicked: root.removed()
    }
}
