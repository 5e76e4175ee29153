// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
pragma ComponentBehavior: Bound
import QtQuick
import Veltro.Design

/// One step of the explanation.
Surface {
    id: root

    required property string number
    required property string title
    required property string text

    implicitHeight: column.implicitHeight + 36
    radius: Theme.cardRadius
    color: Theme.card
    strokeColor: Theme.hairline
    strokeWidth: 1

    TextMetrics {
        id: widest
        text: "0"
        font.family: Theme.family
        font.pixelSize: 13
        font.weight: Font.DemiBold
    }
    Column {
        id: column
        x: 18
        y: 18
        width: parent.width - 36
        spacing: 6

        Row {
            Accessible.role: Accessible.StaticText
            Accessible.name: root.number

            // Digits of one width, which the font gives by a feature that cannot be asked for.
            Repeater {
                model: root.number.length
                delegate: Label {
                    required property int index

                    width: Math.ceil(widest.advanceWidth)
                    horizontalAlignment: Text.AlignHCenter
                    text: root.number.charAt(index)
                    color: Theme.accent
                    font: widest.font
                    Accessible.ignored: true
                }
            }
        }
        Label {
            width: parent.width
            text: root.title
            wrapMode: Text.Wrap
            font.pixelSize: 16
            font.weight: Font.DemiBold
        }
        Label {
            width: parent.width
            text: root.text
            color: Theme.inkSecondary
            wrapMode: Text.Wrap
            lineHeight: 1.2
        }
    }
}
