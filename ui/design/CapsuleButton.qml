// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import QtQuick.Templates as T
import Veltro.Design

/// A small button on a capsule, or on none when `ground` is transparent.
T.Button {
    id: root

    property color ground: Theme.accent
    property color foreground: Theme.accentText
    property color strokeColor: "transparent"
    /// A symbol's name, or nothing.
    property string symbol
    property bool symbolAtEnd: false

    implicitWidth: implicitContentWidth + leftPadding + rightPadding
    implicitHeight: implicitContentHeight + topPadding + bottomPadding
    horizontalPadding: 14
    verticalPadding: 7
    spacing: 5
    font.family: Theme.family
    font.pixelSize: 12
    font.weight: Font.DemiBold
    focusPolicy: Qt.StrongFocus
    hoverEnabled: true
    opacity: enabled ? 1 : 0.4
    Accessible.role: Accessible.Button
    Accessible.name: text
    Accessible.onPressAction: if (root.enabled)
        root.clicked()

    contentItem: Row {
        spacing: root.spacing
        layoutDirection: root.symbolAtEnd ? Qt.RightToLeft : Qt.LeftToRight
        opacity: root.down ? 0.8 : 1

        Symbol {
            anchors.verticalCenter: parent.verticalCenter
            visible: root.symbol !== ""
            name: root.symbol
            size: root.font.pixelSize
            weight: root.font.weight
            color: root.foreground
        }
        Text {
            anchors.verticalCenter: parent.verticalCenter
            text: root.text
            textFormat: Text.PlainText
            font: root.font
            color: root.foreground
        }
    }
    background: Surface {
        radius: height / 2
        cornerExponent: 2
        color: root.ground
        strokeColor: root.strokeColor
        strokeWidth: 1

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
        }
    }
}
