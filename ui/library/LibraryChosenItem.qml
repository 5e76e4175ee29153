// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import Veltro.Design
import Veltro.Library
import Veltro.Player

/// The one item that is chosen: it plays, and is shown, opened and deleted from here.
FocusScope {
    id: root

    required property LibraryScreen screen

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
            width: parent.width - 44 // the divider's half is beside it
            spacing: 12

            MacVideoPlayer {
                width: parent.width
                height: Math.max(120, Math.round(width * 9 / 16))
                visible: root.screen.hasFile
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
                    enabled: root.screen.hasFile
                    onClicked: root.screen.reveal(root.screen.file)
                }
                CapsuleButton {
                    height: 32
                    symbol: "play.fill"
                    text: qsTr("Open")
                    ground: Theme.card
                    foreground: Theme.ink
                    strokeColor: Theme.hairline
                    enabled: root.screen.hasFile
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
