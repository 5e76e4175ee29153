// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import QtQuick.Templates as T
import Veltro.Design

/// One quality on a capsule.
T.RadioButton {
    id: root

    implicitWidth: label.implicitWidth + 28
    implicitHeight: label.implicitHeight + 14
    hoverEnabled: true
    focusPolicy: Qt.StrongFocus
    Accessible.role: Accessible.RadioButton
    Accessible.name: text
    Accessible.onPressAction: root.clicked()
    Accessible.onToggleAction: root.clicked()

    contentItem: Item {
        Text {
            id: label
            anchors.centerIn: parent
            text: root.text
            textFormat: Text.PlainText
            font.family: Theme.family
            font.pixelSize: 13
            font.weight: Font.DemiBold
            color: root.checked ? "#FFFFFF" : Theme.ink
        }
    }
    background: Surface {
        radius: height / 2
        cornerExponent: 2.2 // still a capsule, with ends that run softly into its sides
        color: root.checked ? Theme.accent : Theme.sunken
        strokeColor: root.checked ? "transparent" : Theme.hairline
        strokeWidth: root.checked ? 0 : 1

        FocusRing {
            shown: root.visualFocus
            radius: height / 2
        }
    }
}
