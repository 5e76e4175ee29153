// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
pragma ComponentBehavior: Bound
import QtQuick
import Veltro.Design
import Veltro.Player

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
        anchors.fill: parent
        active: root.count === 1
        sourceComponent: FocusScope {
            Flickable {
                anchors.fill: parent
                contentHeight: one.height + 2 * one.y
                boundsBehavior: Flickable.StopAtBounds
                interactive: contentHeight > height
                clip: true

                Column {
                    id: one
                    x: 20
                    y: 24
                    width: parent.width - 40
                    spacing: 12

                    MacVideoPlayer {
                        width: parent.width
                        height: Math.max(120, Math.round(width * 9 / 16))
                        visible: root.screen.file.toString() !== ""
                        url: root.screen.file
                        volume: root.screen.volume
                        muted: root.screen.muted
                        onVolumeChosen: (volume, muted) => root.screen.rememberVolume(volume, muted)
                    }
                    Label {
                        width: parent.width
                        text: root.screen.title
                        font.pixelSize: 18
                        font.weight: Font.DemiBold
                        wrapMode: Text.Wrap
                        maximumLineCount: 4
                        elide: Text.ElideRight
                    }
                    Label {
                        width: parent.width
                        text: root.screen.details
                        font.pixelSize: 12
                        color: Theme.inkTertiary
                        wrapMode: Text.Wrap
                        maximumLineCount: 3
                        elide: Text.ElideRight
                    }
                    Flow {
                        width: parent.width
                        spacing: Theme.gap

                        CapsuleButton {
                            height: 32
                            symbol: "folder"
                            text: qsTr("Show in Finder")
                            ground: Theme.card
                            foreground: Theme.ink
                            strokeColor: Theme.hairline
                            enabled: root.screen.file.toString() !== ""
                            onClicked: root.screen.reveal(root.screen.file)
                        }
                        CapsuleButton {
                            height: 32
                            symbol: "play.fill"
                            text: qsTr("Open")
                            ground: Theme.card
                            foreground: Theme.ink
                            strokeColor: Theme.hairline
                            enabled: root.screen.file.toString() !== ""
                            onClicked: root.screen.open(root.screen.file)
                        }
                        IconButton {
                            width: 32
                            height: 32
                            name: "trash"
                            text: qsTr("Delete")
                            tint: Theme.danger
                            outlined: true
                            ground: Theme.card
                            onClicked: root.screen.deleteSelected()
                        }
                    }
                }
            }
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
