// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import Veltro.Design

/// Lets what is put into it move in from the top edge and fade, and out again.
Item {
    id: root

    required property bool shown
    property bool springs: true
    property real progress: root.shown ? 1 : 0
    default property alias content: holder.data

    anchors.horizontalCenter: parent ? parent.horizontalCenter : undefined
    implicitWidth: holder.childrenRect.width
    implicitHeight: holder.childrenRect.height
    visible: root.progress > 0
    enabled: root.shown
    opacity: root.progress

    Behavior on progress {
        NumberAnimation {
            duration: root.springs ? Theme.springDuration : 250
            easing.type: Easing.BezierSpline
            easing.bezierCurve: root.springs ? Theme.spring : Theme.easeOut
        }
    }
    Item {
        id: holder
        width: parent.width
        height: parent.height
        y: -(1 - root.progress) * (root.height + 24)
    }
}
