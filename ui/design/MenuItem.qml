// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import QtQuick.Templates as T
import Veltro.Design

/// A line of a menu. Keys that its action has stand at its end.
T.MenuItem {
    id: root

    property bool destructive: false
    /// The keys that do the same, such as "Ctrl+2"; who hears them is settled elsewhere.
    property string keys

    implicitWidth: Math.max(170, label.implicitWidth + (root.keys === "" ? 0 : keysLabel.implicitWidth + 32) + leftPadding + rightPadding)
    implicitHeight: 28
    horizontalPadding: 12
    font.family: Theme.family
    font.pixelSize: 13
    hoverEnabled: true
    activeFocusOnTab: root.visible && root.enabled
    Accessible.role: Accessible.MenuItem
    Accessible.name: text
    Accessible.onPressAction: root.triggered()

    contentItem: Item {
        opacity: root.enabled ? 1 : 0.4

        Text {
            id: label
            anchors.left: parent.left
            anchors.verticalCenter: parent.verticalCenter
            text: root.text
            textFormat: Text.PlainText
            font: root.font
            color: root.highlighted ? Theme.accentText : root.destructive ? Theme.danger : Theme.ink
        }
        Text {
            id: keysLabel
            anchors.right: parent.right
            anchors.verticalCenter: parent.verticalCenter
            text: KeyNames.text(root.keys)
            textFormat: Text.PlainText
            font.family: Theme.family
            font.pixelSize: 12
            color: root.highlighted ? Theme.accentText : Theme.inkTertiary
        }
    }
    background: Surface {
        x: 4
        width: root.width - 8
        height: root.height
        radius: 6
        color: root.highlighted && root.enabled ? Theme.accent : "transparent"
    }
}
