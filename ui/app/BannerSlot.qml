// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import Veltro.Design

/// Lets its content move in from the top edge and fade, and out again. It is made when it is first
/// shown.
Item {
    id: root

    required property bool shown
    property bool springs: true
    property real progress: root.shown ? 1 : 0
    property alias content: holder.sourceComponent

    anchors.horizontalCenter: parent ? parent.horizontalCenter : undefined
    implicitWidth: holder.width
    implicitHeight: holder.height
    visible: root.progress > 0
    enabled: root.shown
    opacity: root.progress

    onShownChanged: if (root.shown)
        holder.active = true
    Component.onCompleted: if (root.shown)
        holder.active = true

    Behavior on progress {
        NumberAnimation {
            duration: root.springs ? Theme.springDuration : 250
            easing.type: Easing.BezierSpline
            easing.bezierCurve: root.springs ? Theme.spring : Theme.easeOut
        }
    }
    Loader {
        id: holder
        active: false
        y: -(1 - root.progress) * (root.height + 24)
    }
}
