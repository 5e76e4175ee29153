// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import Veltro.Design
import Veltro.Downloads

/// What can be done with a download in its state: play, cancel or retry.
Row {
    id: root

    required property DownloadRow row

    signal cancelRequested
    signal retryRequested
    signal playRequested

    IconButton {
        id: playButton
        objectName: "play"
        visible: root.row.canPlay
        width: 28
        height: 28
        name: "play.fill"
        iconSize: 14
        tint: "#FFFFFF"
        ground: Theme.accent
        text: qsTr("Play")
        Accessible.description: root.row.title
        onClicked: root.playRequested()

        HoverHelp {
            text: playButton.text
            shown: playButton.hovered
        }
    }
    IconButton {
        objectName: "cancel"
        visible: root.row.canCancel
        width: 28
        height: 28
        name: "xmark.circle.fill"
        iconSize: 22
        tint: Theme.inkTertiary
        text: qsTr("Cancel")
        Accessible.description: root.row.title
        onClicked: root.cancelRequested()
    }
    CapsuleButton {
        objectName: "retry"
        visible: root.row.canRetry
        horizontalPadding: 10
        verticalPadding: 6
        ground: Theme.faded(Theme.accent, 0.1)
        foreground: Theme.accent
        symbol: "arrow.clockwise"
        text: qsTr("Retry")
        Accessible.description: root.row.title
        onClicked: root.retryRequested()
    }
}
