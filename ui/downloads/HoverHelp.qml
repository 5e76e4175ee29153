// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import QtQuick.Templates as T
import Veltro.Design

/// The short text that appears over what the pointer rests on.
T.ToolTip {
    id: root

    property bool shown: false

    x: parent ? Math.round((parent.width - width) / 2) : 0
    y: -height - 6
    implicitWidth: label.implicitWidth + 16
    implicitHeight: label.implicitHeight + 10
    visible: root.shown
    delay: 600
    padding: 5
    horizontalPadding: 8
    contentItem: Label {
        id: label
        text: root.text
        font.pixelSize: 12
    }
    background: Surface {
        radius: 6
        color: Theme.card
        strokeColor: Theme.hairline
        strokeWidth: 1
    }
}
