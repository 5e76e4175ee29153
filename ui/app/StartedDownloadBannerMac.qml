// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import Veltro.Design

/// Says that a download has begun.
BannerCard {
    id: root

    required property string label
    signal tapped

    title: qsTr("Download started")
    detail: root.label
    leading: Spinner {
        objectName: "startedSpinner"
        running: root.visible
        Accessible.ignored: true
    }
    trailing: Item {
        // What shows under the pointer reaches into the card's padding; the words stay within it.
        width: viewQueue.width - viewQueue.rightPadding
        height: viewQueue.height

        CapsuleButton {
            id: viewQueue
            objectName: "viewQueue"
            text: qsTr("View queue")
            symbol: "arrow.right"
            symbolAtEnd: true
            ground: "transparent"
            foreground: Theme.accent
            horizontalPadding: 8
            font.pixelSize: 11
            onClicked: root.tapped()
        }
    }
}
