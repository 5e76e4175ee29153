// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import QtQuick.Templates as T
import Veltro.Design

/// A large button of one of four kinds, with an optional line icon before or after its text.
T.Button {
    id: root

    enum Kind {
        Primary,
        Secondary,
        Ghost,
        Success
    }
    property int kind: ActionButton.Primary
    /// What stands on it. A text that has a "&" is given here, and with each "&" twice as `text`,
    /// where one alone would make the next character press the button together with Alt.
    property string caption: root.text
    /// A line icon's name, or nothing.
    property string iconName
    property real iconSize: 14
    property bool iconAtEnd: false
    readonly property color foreground: {
        switch (root.kind) {
        case ActionButton.Primary:
            return Theme.accentText;
        case ActionButton.Success:
            return "#FFFFFF";
        default:
            return Theme.ink;
        }
    }
    readonly property color ground: {
        switch (root.kind) {
        case ActionButton.Primary:
            return root.down ? Theme.faded(Theme.accent, 0.9) : Theme.accent;
        case ActionButton.Secondary:
            return Theme.card;
        case ActionButton.Success:
            return Theme.success;
        default:
            return root.down ? Theme.sunken : "transparent";
        }
    }

    implicitWidth: implicitContentWidth + leftPadding + rightPadding
    implicitHeight: implicitContentHeight + topPadding + bottomPadding
    horizontalPadding: 20
    verticalPadding: 14
    spacing: 8
    font: Theme.buttonFont
    focusPolicy: Qt.StrongFocus
    hoverEnabled: true
    Accessible.role: Accessible.Button
    Accessible.name: root.caption
    Accessible.onPressAction: if (root.enabled)
        root.clicked()

    contentItem: Row {
        spacing: root.spacing
        layoutDirection: root.iconAtEnd ? Qt.RightToLeft : Qt.LeftToRight
        opacity: root.down ? 0.92 : 1

        Behavior on opacity {
            NumberAnimation {
                duration: Theme.quick
                easing.type: Easing.BezierSpline
                easing.bezierCurve: Theme.easeOut
            }
        }
        LineIcon {
            anchors.verticalCenter: parent.verticalCenter
            visible: root.iconName !== ""
            name: root.iconName
            width: root.iconSize
            height: root.iconSize
            stroke: 2.2
            color: root.foreground
        }
        Text {
            anchors.verticalCenter: parent.verticalCenter
            text: root.caption
            textFormat: Text.PlainText
            font: root.font
            color: root.foreground
        }
    }
    background: Surface {
        radius: Theme.cardRadius
        color: root.ground
        strokeColor: root.kind === ActionButton.Secondary ? Theme.hairline : "transparent"
        strokeWidth: root.kind === ActionButton.Secondary ? 1 : 0
        opacity: root.down ? 0.92 : 1

        Behavior on opacity {
            NumberAnimation {
                duration: Theme.quick
                easing.type: Easing.BezierSpline
                easing.bezierCurve: Theme.easeOut
            }
        }
        FocusRing {
            shown: root.visualFocus
            radius: Theme.cardRadius + 2
        }
    }
}
