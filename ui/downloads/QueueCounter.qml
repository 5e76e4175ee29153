// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import Veltro.Design

/// One number of the queue under its title; a rule may stand before it.
Item {
    id: root

    required property string title
    required property int count
    property bool hasRule: false

    Accessible.role: Accessible.StaticText
    Accessible.focusable: root.activeFocusOnTab
    Accessible.name: qsTr("%1: %2").arg(root.title).arg(root.count)

    Rectangle {
        objectName: "rule"
        anchors.verticalCenter: parent.verticalCenter
        visible: root.hasRule
        width: 1
        height: 28
        color: Theme.hairline
    }
    Column {
        anchors.centerIn: parent
        spacing: 4

        Label {
            anchors.horizontalCenter: parent.horizontalCenter
            text: root.title.toUpperCase()
            color: Theme.inkTertiary
            font.pixelSize: 11
            font.letterSpacing: 1.1
            Accessible.ignored: true
        }
        Label {
            anchors.horizontalCenter: parent.horizontalCenter
            text: root.count
            font.pixelSize: 20
            font.weight: Font.DemiBold
            Accessible.ignored: true
        }
    }
}
