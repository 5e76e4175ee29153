// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick

/// A row with one choice of several.
SettingsRow {
    id: root

    property alias choices: box.model
    /// -1 while none of them holds.
    required property int choice

    signal chosen(index: int)

    ChoiceBox {
        id: box
        name: root.text
        choice: root.choice
        onChosen: index => root.chosen(index)
    }
}
