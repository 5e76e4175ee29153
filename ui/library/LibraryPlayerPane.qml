// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import Veltro.Design
import Veltro.Library

/// What is said and played of the choice: of nothing, of one item, of many.
FocusScope {
    id: root

    required property LibraryScreen screen
    readonly property int count: root.screen.selection.count

    // nothing
    Column {
        anchors.centerIn: parent
        width: parent.width - 40
        spacing: Theme.gap
        visible: root.count === 0

        LineIcon {
            anchors.horizontalCenter: parent.horizontalCenter
            width: 36
            height: 36
            name: "play"
            color: Theme.neutral
        }
        Label {
            width: parent.width
            horizontalAlignment: Text.AlignHCenter
            text: qsTr("Pick a clip")
            font.pixelSize: 17
            font.weight: Font.DemiBold
        }
        Label {
            width: parent.width
            horizontalAlignment: Text.AlignHCenter
            wrapMode: Text.Wrap
            text: qsTr("Click any tile to play it here.")
            color: Theme.inkTertiary
        }
    }

    // one; the player is there only while there is something to play
    Loader {
        id: one

        readonly property bool wanted: root.count === 1

        anchors.fill: parent
        onWantedChanged: {
            if (one.wanted)
                one.setSource("LibraryChosenItem.qml", {
                    "screen": root.screen
                });
            else
                one.setSource("");
        }
    }

    // many
    Column {
        anchors.centerIn: parent
        width: parent.width - 40
        spacing: Theme.gap
        visible: root.count >= 2

        Symbol {
            anchors.horizontalCenter: parent.horizontalCenter
            name: "square.grid.2x2.fill"
            size: 36
            color: Theme.inkTertiary
        }
        Label {
            width: parent.width
            horizontalAlignment: Text.AlignHCenter
            text: root.count >= 2 ? root.screen.countText : ""
            font.pixelSize: 22
            wrapMode: Text.Wrap
        }
        Label {
            width: parent.width
            horizontalAlignment: Text.AlignHCenter
            text: root.count >= 2 ? root.screen.totalText : ""
            color: Theme.inkSecondary
        }
        Label {
            width: parent.width
            horizontalAlignment: Text.AlignHCenter
            wrapMode: Text.Wrap
            text: qsTr("Click any tile to play it here.")
            color: Theme.inkTertiary
        }
        CapsuleButton {
            anchors.horizontalCenter: parent.horizontalCenter
            height: 34
            symbol: "trash"
            text: root.count >= 2 ? root.screen.deleteText : ""
            font.pixelSize: 13
            ground: Theme.card
            foreground: Theme.danger
            strokeColor: Theme.hairline
            onClicked: root.screen.deleteSelected()
        }
    }
}
