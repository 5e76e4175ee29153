// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import Veltro.Design

/// Three cards that explain the program.
Column {
    id: root

    readonly property real cardWidth: (width - 32) / 3
    readonly property real cardHeight: Math.max(first.implicitHeight, second.implicitHeight, third.implicitHeight)

    spacing: 14

    SectionHeader {
        width: parent.width
        title: qsTr("How it works")
    }
    Row {
        spacing: 16

        StepCard {
            id: first
            width: root.cardWidth
            height: root.cardHeight
            number: "01"
            title: qsTr("Paste a URL")
            text: qsTr("From any video or audio page. The address bar in your browser is all you need.")
        }
        StepCard {
            id: second
            width: root.cardWidth
            height: root.cardHeight
            number: "02"
            title: qsTr("Pick a quality")
            text: qsTr("Pick the resolution, format, or extract just the audio.")
        }
        StepCard {
            id: third
            width: root.cardWidth
            height: root.cardHeight
            number: "03"
            title: qsTr("Saved on your Mac")
            text: qsTr("Files land in your Downloads folder. Play, share, or move them anywhere.")
        }
    }
}
