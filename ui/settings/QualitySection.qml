// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import Veltro.Settings

/// What is saved when nothing else is chosen.
SettingsSection {
    id: root

    required property SettingsModel settings

    title: qsTr("Default quality")

    ChoiceRow {
        width: parent.width
        text: qsTr("Quality")
        choices: root.settings.qualityLabels
        choice: root.settings.quality
        onChosen: index => root.settings.quality = index
    }
    ToggleRow {
        width: parent.width
        text: qsTr("Extract audio by default")
        isOn: root.settings.extractAudio
        onSwitched: on => root.settings.extractAudio = on
    }
    ChoiceRow {
        width: parent.width
        text: qsTr("Audio format")
        choices: root.settings.audioFormatLabels
        choice: root.settings.audioFormat
        onChosen: index => root.settings.audioFormat = index
    }
}
