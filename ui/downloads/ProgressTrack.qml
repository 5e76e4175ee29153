// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import Veltro.Design

/// A thin bar. What is filled moves to a new share within 0.3 s, and never vanishes.
Rectangle {
    id: root

    property real fraction: 0
    property bool animated: true
    readonly property real shownFraction: filled.fraction

    implicitHeight: 4
    radius: height / 2
    antialiasing: true
    color: Theme.sunken

    Rectangle {
        id: filled
        objectName: "filled"

        property real fraction: root.fraction

        width: Math.min(root.width, Math.max(2, root.width * fraction))
        height: parent.height
        radius: Math.min(width, height) / 2
        antialiasing: true
        color: Theme.ink

        Behavior on fraction {
            enabled: root.animated

            NumberAnimation {
                duration: 300
                easing.type: Easing.BezierSpline
                easing.bezierCurve: Theme.easeOut
            }
        }
    }
}
