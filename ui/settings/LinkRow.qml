// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import QtQuick.Templates as T
import Veltro.Design

/// A row that opens a page in the browser.
T.AbstractButton {
    id: root

    implicitHeight: 40
    height: implicitHeight
    focusPolicy: Qt.StrongFocus
    hoverEnabled: true
    Accessible.role: Accessible.Button
    Accessible.name: text
    Accessible.onPressAction: root.clicked()

    RowRule {}
    contentItem: Item {
        Label {
            id: label
            x: 16
            anchors.verticalCenter: parent.verticalCenter
            text: root.text
            color: Theme.accent
            font.underline: root.hovered
            opacity: root.down ? 0.6 : 1
            Accessible.ignored: true

            FocusRing {
                shown: root.visualFocus
                radius: 4
            }
        }
    }
}
