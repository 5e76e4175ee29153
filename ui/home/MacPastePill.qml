// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import Veltro.Design

/// Offers the link on the pasteboard. Comes and goes at the top of the screen; the last link stays
/// readable while it goes.
Surface {
    id: root

    required property bool offered
    required property string linkText
    signal used
    signal dismissed

    property string lastText
    property real progress: root.offered ? 1 : 0

    width: row.implicitWidth + 24
    height: 56
    y: 14 - (1 - progress) * (height + 24)
    opacity: progress
    visible: progress > 0
    enabled: root.offered
    radius: 16
    color: Theme.card
    strokeColor: Theme.hairline
    strokeWidth: 1
    shadowColor: Theme.shadow(0.06)
    shadowBlur: 16
    shadowOffsetY: 6
    Accessible.role: Accessible.Grouping
    Accessible.name: qsTr("Use copied link?")

    onLinkTextChanged: if (root.linkText !== "")
        root.lastText = root.linkText

    // A critically damped spring of response 0.45.
    Behavior on progress {
        NumberAnimation {
            duration: 643
            easing.type: Easing.BezierSpline
            easing.bezierCurve: Theme.spring
        }
    }
    Row {
        id: row
        x: 12
        anchors.verticalCenter: parent.verticalCenter
        spacing: 12

        Rectangle {
            objectName: "pillMark"
            anchors.verticalCenter: parent.verticalCenter
            width: 32
            height: 32
            radius: 16
            antialiasing: true
            color: Theme.ink

            LineIcon {
                anchors.centerIn: parent
                width: 14
                height: 14
                name: "clipboard"
                color: "#FFFFFF"
            }
        }
        Column {
            anchors.verticalCenter: parent.verticalCenter
            width: Math.min(260, Math.max(180, title.implicitWidth, host.implicitWidth))
            spacing: 2

            Label {
                id: title
                text: qsTr("Use copied link?")
                font.weight: Font.DemiBold
            }
            Label {
                id: host
                width: parent.width
                text: root.lastText
                elide: Text.ElideMiddle
                color: Theme.inkTertiary
                font.pixelSize: 11
            }
        }
        CapsuleButton {
            objectName: "useCopiedLink"
            anchors.verticalCenter: parent.verticalCenter
            text: qsTr("Use")
            horizontalPadding: 12
            verticalPadding: 7
            font.pixelSize: 13
            onClicked: root.used()
        }
        IconButton {
            objectName: "dismissCopiedLink"
            anchors.verticalCenter: parent.verticalCenter
            name: "close"
            iconSize: 11
            text: qsTr("Dismiss")
            onClicked: root.dismissed()
        }
    }
}
