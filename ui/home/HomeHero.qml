// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import Veltro.Design

/// What the program does, in the largest letters.
Column {
    id: root

    spacing: 14

    Eyebrow {
        text: qsTr("Video downloader · 1,800+ sites")
    }
    Label {
        objectName: "headline"
        text: qsTr("Save any video.\nFrom any site.")
        font.family: Theme.displayFamily
        font.pixelSize: 64
        font.weight: Font.Bold
        font.letterSpacing: -1.9
        lineHeight: 0.9
        Accessible.role: Accessible.Heading
    }
    Label {
        objectName: "lead"
        width: Math.min(720, root.width)
        text: qsTr("Drop a link or paste one below. Pick a quality. Save it forever, right next to your other files.")
        color: Theme.inkSecondary
        font.pixelSize: 18
        lineHeight: 1.25
        wrapMode: Text.WordWrap
    }
}
