// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
pragma ComponentBehavior: Bound
import QtQuick
import QtQuick.Templates as T
import Veltro.Design

/// One line of text. `framed` draws a ground of its own; without it the field lies on a card.
T.TextField {
    id: root

    property bool framed: true

    implicitWidth: 200
    implicitHeight: contentHeight + topPadding + bottomPadding
    leftPadding: framed ? 10 : 0
    rightPadding: leftPadding
    topPadding: framed ? 7 : 0
    bottomPadding: topPadding
    color: Theme.ink
    selectionColor: Theme.selectedText
    selectedTextColor: Theme.ink
    placeholderTextColor: Theme.inkTertiary
    font.family: Theme.family
    font.pixelSize: 13
    selectByMouse: true
    verticalAlignment: TextInput.AlignVCenter
    opacity: root.enabled ? 1 : 0.5
    Accessible.role: Accessible.EditableText
    Accessible.name: placeholderText

    cursorDelegate: Surface {
        id: caret

        width: 2
        radius: 1
        cornerExponent: 2
        color: Theme.accent
        visible: root.cursorVisible

        function show() {
            caret.opacity = 1;
            blink.changes = 0;
            if (blink.running)
                blink.restart();
        }

        Connections {
            function onCursorPositionChanged() {
                caret.show();
            }
            function onCursorVisibleChanged() {
                caret.show();
            }
            target: root
        }
        // Each time costs a frame: who has not typed for a while sees the caret stand still.
        Timer {
            id: blink

            property int changes: 0
            // The hints of the style have no type that a linter could see.
            readonly property int period: Qt.styleHints.cursorFlashTime // qmllint disable

            running: root.cursorVisible && period > 0 && blink.changes < 10
            repeat: true
            interval: Math.max(1, period / 2)
            onTriggered: {
                caret.opacity = caret.opacity > 0 ? 0 : 1;
                blink.changes += 1;
            }
        }
    }

    FieldPaste {
        field: root
    }
    Text {
        x: root.leftPadding
        width: root.width - root.leftPadding - root.rightPadding
        height: root.height
        visible: root.length === 0 && root.preeditText === ""
        text: root.placeholderText
        textFormat: Text.PlainText
        font: root.font
        color: root.placeholderTextColor
        elide: Text.ElideRight
        verticalAlignment: Text.AlignVCenter
    }
    background: Surface {
        visible: root.framed
        radius: 8
        color: Theme.card
        strokeColor: Theme.hairline
        strokeWidth: 1

        FocusRing {
            shown: root.activeFocus && root.framed
            radius: 10
            inset: -2
        }
    }
}
