// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import Veltro.Design

/// The ring around what has the keyboard's focus; it lies in the item that it surrounds.
Rectangle {
    id: root

    property bool shown: false
    property real inset: -3

    anchors.fill: parent
    anchors.margins: root.inset
    visible: root.shown
    color: "transparent"
    antialiasing: true
    border.color: Theme.focus
    border.width: 3
}
