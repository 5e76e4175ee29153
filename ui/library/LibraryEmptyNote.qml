// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import Veltro.Design

/// Stands in the grid's place while nothing is saved.
Column {
    id: root

    spacing: 10

    Symbol {
        anchors.horizontalCenter: parent.horizontalCenter
        name: "square.grid.2x2.fill"
        size: 40
        color: Theme.inkTertiary
    }
    Label {
        width: root.width
        horizontalAlignment: Text.AlignHCenter
        text: qsTr("Empty library")
        font: Theme.titleFont
    }
    Label {
        width: root.width
        horizontalAlignment: Text.AlignHCenter
        wrapMode: Text.Wrap
        text: qsTr("Anything you save lands here. Paste a link on the Home tab or drag one onto the window.")
        font.pixelSize: 14
        color: Theme.inkSecondary
    }
}
