// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import QtQuick.Templates as T
import Veltro.Design

/// A thin bar that shows itself while its view moves or the pointer is over it.
T.ScrollBar {
    id: root

    implicitWidth: 10
    implicitHeight: 10
    padding: 2
    minimumSize: 0.06
    visible: root.policy !== T.ScrollBar.AlwaysOff && root.size < 1
    Accessible.role: Accessible.ScrollBar
    Accessible.name: root.orientation === Qt.Vertical ? qsTr("Vertical scroll bar") : qsTr("Horizontal scroll bar")

    contentItem: Rectangle {
        radius: Math.min(width, height) / 2
        antialiasing: true
        color: Theme.faded(Theme.ink, root.pressed ? 0.5 : root.hovered ? 0.4 : 0.28)
        opacity: root.active || root.hovered || root.policy === T.ScrollBar.AlwaysOn ? 1 : 0

        Behavior on opacity {
            NumberAnimation {
                duration: 200
            }
        }
    }
}
