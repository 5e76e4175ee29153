// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import QtQuick.Templates as T
import Veltro.Design

/// A round button that is only a drawing; `text` is its name for a screen reader.
T.Button {
    id: root

    /// A line icon's or a symbol's name.
    property string name
    property real iconSize: 14
    property real stroke: 2
    property color tint: Theme.inkTertiary
    property color ground: "transparent"
    property bool outlined: false

    implicitWidth: 28
    implicitHeight: 28
    padding: 0
    focusPolicy: Qt.StrongFocus
    hoverEnabled: true
    opacity: enabled ? 1 : 0.4
    Accessible.role: Accessible.Button
    Accessible.name: text
    Accessible.onPressAction: if (root.enabled)
        root.clicked()

    contentItem: Item {
        LineIcon {
            anchors.centerIn: parent
            width: root.iconSize
            height: root.iconSize
            name: root.name
            stroke: root.stroke
            color: root.tint
        }
    }
    background: Surface {
        radius: Math.min(width, height) / 2
        cornerExponent: 2
        color: root.ground
        strokeColor: root.outlined ? Theme.hairline : "transparent"
        strokeWidth: root.outlined ? 1 : 0

        Rectangle {
            anchors.fill: parent
            radius: height / 2
            antialiasing: true
            visible: root.hovered && root.enabled
            color: root.down ? Theme.pressed : Theme.hover
        }
        FocusRing {
            shown: root.visualFocus
            radius: height / 2
            inset: -2
        }
    }
}
