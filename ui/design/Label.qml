// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import Veltro.Design

/// A text as it is, never markup. Set font.pixelSize and font.weight where it is used.
Text {
    id: root

    color: Theme.ink
    font.family: Theme.family
    font.pixelSize: 13
    textFormat: Text.PlainText
    Accessible.role: Accessible.StaticText
    Accessible.name: text
    Accessible.ignored: text === ""
    // The role alone would make it so; only a binding comes late enough to take that back.
    Accessible.focusable: root.activeFocusOnTab
}
