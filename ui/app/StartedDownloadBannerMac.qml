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
        running: root.visible
        Accessible.ignored: true
    }
    trailing: CapsuleButton {
        objectName: "viewQueue"
        anchors.verticalCenter: parent.verticalCenter
        text: qsTr("View queue")
        symbol: "arrow.right"
        symbolAtEnd: true
        ground: "transparent"
        foreground: Theme.accent
        horizontalPadding: 6
        font.pixelSize: 11
        onClicked: root.tapped()
    }
}
