// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import Veltro.Design

/// A short word on its own ground.
Surface {
    id: root

    property string text
    property color tint: Theme.accent
    property bool filled: false

    implicitWidth: label.implicitWidth + 16
    implicitHeight: label.implicitHeight + 8
    radius: 6
    color: filled ? tint : Theme.faded(tint, 0.08)

    Label {
        id: label
        anchors.centerIn: parent
        text: root.text
        color: root.filled ? "#FFFFFF" : root.tint
        font.pixelSize: 11
        font.weight: Font.DemiBold
        font.letterSpacing: 0.4
    }
}
