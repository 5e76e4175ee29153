// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick

/// What a window costs that shows one text and takes keys: the least that ours could be.
Window {
    id: root

    property bool ready: false
    property int turns: 0

    width: 1120
    height: 760
    visible: true
    title: "Bare"
    color: "#F6F3EF"

    MouseArea {
        anchors.fill: parent
        acceptedButtons: Qt.NoButton
        onWheel: root.turns += 1
    }
    Text {
        x: 40 + root.turns % 2
        y: 40
        text: "Save any video.\nFrom any site."
        textFormat: Text.PlainText
        color: "#10141C"
        font.family: "Inter Display"
        font.pixelSize: 64
        font.weight: Font.Bold
        font.letterSpacing: -1.9
        lineHeight: 0.9
    }
    TextInput {
        x: 40
        y: 300
        width: 600
        focus: true
        color: "#10141C"
        font.family: "Inter"
        font.pixelSize: 18
        cursorDelegate: Rectangle {
            width: 2
            color: "#6F64E5"
        }
    }
    Rectangle {
        x: 40
        y: 400
        width: 8
        height: 8
        visible: root.ready
        color: "#147F51"
    }
}
