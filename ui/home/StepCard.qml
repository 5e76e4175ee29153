// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
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

    Column {
        id: column
        x: 18
        y: 18
        width: parent.width - 36
        spacing: 6

        Label {
            text: root.number
            color: Theme.accent
            font.weight: Font.DemiBold
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
