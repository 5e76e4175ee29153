// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import Veltro.App
import Veltro.Design

/// The edge between the sidebar and the screen, to drag or to move with the arrow keys.
MouseArea {
    id: root

    required property WindowMemory memory
    property real grip: 0

    function move(by: int) {
        root.memory.sidebarWidth += by;
    }

    objectName: "sidebarDivider"
    width: 8
    cursorShape: Qt.SplitHCursor
    preventStealing: true
    activeFocusOnTab: true
    Accessible.role: Accessible.Splitter
    Accessible.name: qsTr("Width of the sidebar")
    Accessible.focusable: true
    Accessible.onDecreaseAction: root.move(-10)
    Accessible.onIncreaseAction: root.move(10)
    Keys.onLeftPressed: root.move(-10)
    Keys.onRightPressed: root.move(10)
    onPressed: mouse => root.grip = mouse.x
    onPositionChanged: mouse => root.memory.sidebarWidth = Math.round(root.x + root.width / 2 + mouse.x - root.grip)
    onDoubleClicked: root.memory.sidebarWidth = 240

    Rectangle {
        anchors.horizontalCenter: parent.horizontalCenter
        width: 3
        height: parent.height
        visible: root.activeFocus
        color: Theme.focus
    }
}
