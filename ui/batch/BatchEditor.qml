// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import QtQuick.Templates as T
import Veltro.Design

/// A card to paste lines into.
Surface {
    id: root

    required property string text
    signal edited(string text)

    radius: Theme.cardRadius
    color: Theme.card
    strokeColor: editor.activeFocus ? Theme.accent : Theme.hairline
    strokeWidth: 1

    onTextChanged: if (editor.text !== root.text)
        editor.text = root.text

    T.ScrollView {
        id: scroll
        focus: true
        anchors.fill: parent
        anchors.margins: 1
        contentWidth: availableWidth
        T.ScrollBar.vertical: ThinScrollBar {
            parent: scroll
            x: scroll.width - width - 2
            y: 4
            height: scroll.height - 8
        }

        T.TextArea {
            id: editor
            objectName: "batchEditor"
            focus: true
            padding: 14
            font.family: Theme.family
            font.pixelSize: 14
            color: Theme.ink
            selectionColor: Theme.selectedText
            selectedTextColor: Theme.ink
            selectByMouse: true
            textFormat: TextEdit.PlainText
            wrapMode: TextEdit.WrapAnywhere
            Accessible.role: Accessible.EditableText
            Accessible.name: qsTr("Links")
            Accessible.multiLine: true
            onTextChanged: root.edited(text)
            Keys.onTabPressed: nextItemInFocusChain(true).forceActiveFocus(Qt.TabFocusReason)
            Keys.onBacktabPressed: nextItemInFocusChain(false).forceActiveFocus(Qt.BacktabFocusReason)

            FieldPaste {
                field: editor
                takesLines: true
            }
        }
    }
}
