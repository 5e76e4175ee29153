// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import Veltro.App

/// The edge between the sidebar and the screen, to drag.
MouseArea {
    id: root

    required property WindowMemory memory
    property real grip: 0

    objectName: "sidebarDivider"
    width: 8
    cursorShape: Qt.SplitHCursor
    preventStealing: true
    onPressed: mouse => root.grip = mouse.x
    onPositionChanged: mouse => root.memory.sidebarWidth = Math.round(root.x + root.width / 2 + mouse.x - root.grip)
    onDoubleClicked: root.memory.sidebarWidth = 240
}
