// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import Veltro.Design
import Veltro.Settings

/// Whether subtitles are wanted, and in which languages.
SettingsSection {
    id: root

    required property SettingsModel settings

    title: qsTr("Subtitles")

    ToggleRow {
        width: parent.width
        text: qsTr("Download subtitles")
        isOn: root.settings.writeSubtitles
        onSwitched: on => root.settings.writeSubtitles = on
    }
    SettingsRow {
        width: parent.width
        text: qsTr("Languages (en, nl, es)")

        TextField {
            objectName: "languages"
            width: 220
            text: root.settings.languages
            Accessible.name: qsTr("Languages (en, nl, es)")
            onTextEdited: root.settings.languages = text
            onActiveFocusChanged: root.settings.languagesFocused = activeFocus
        }
    }
}
