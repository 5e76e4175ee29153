// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import QtQuick.Templates as T
import Veltro.Design

/// A slider on a dark ground: a thin track that fills up to a round handle.
T.Slider {
    id: root

    /// What it is for, to a screen reader.
    required property string label

    implicitWidth: 60
    implicitHeight: 20
    padding: 0
    focusPolicy: Qt.StrongFocus
    hoverEnabled: true
    live: true
    Accessible.role: Accessible.Slider
    Accessible.name: root.label
    Accessible.onIncreaseAction: root.step(1)
    Accessible.onDecreaseAction: root.step(-1)

    function step(by: int) {
        root.value += by * root.stepSize;
        root.moved();
    }

    background: Rectangle {
        y: (root.height - height) / 2
        width: root.width
        height: 4
        radius: 2
        color: Qt.rgba(1, 1, 1, 0.3)

        Rectangle {
            width: root.visualPosition * (root.width - root.handle.width) + root.handle.width / 2
            height: parent.height
            radius: 2
            color: Theme.accentText
        }
    }
    handle: Rectangle {
        x: root.visualPosition * (root.width - width)
        y: (root.height - height) / 2
        width: 12
        height: 12
        radius: 6
        antialiasing: true
        color: Theme.accentText

        FocusRing {
            shown: root.visualFocus
            radius: 9
        }
    }
}
