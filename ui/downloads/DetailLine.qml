// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import Veltro.Design

/// A title over a text that can be selected and copied; nothing where there is no text.
Column {
    id: root

    property string title
    property string text

    visible: root.text !== ""
    spacing: 2

    Label {
        text: root.title
        color: Theme.inkTertiary
        font.pixelSize: 11
        font.weight: Font.DemiBold
        Accessible.ignored: true
    }
    TextEdit {
        width: parent.width
        text: root.text
        textFormat: TextEdit.PlainText
        wrapMode: TextEdit.Wrap
        readOnly: true
        selectByMouse: true
        activeFocusOnTab: true
        color: Theme.ink
        selectionColor: Theme.selectedText
        selectedTextColor: Theme.ink
        font.family: Theme.family
        font.pixelSize: 13
        Accessible.role: Accessible.StaticText
        Accessible.name: root.title
        Accessible.description: root.text
    }
}
