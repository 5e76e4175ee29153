// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import Veltro.Design
import Veltro.Samples
import Veltro.Settings

/// The end of the settings in a window of their own, without a saved site.
Rectangle {
    color: Theme.sunken

    SettingsForm {
        id: form
        anchors.centerIn: parent
        width: 560
        height: 520
        settings: SettingsModel {
            preferences: record.preferences
            onEdited: preferences => record.preferences = preferences
        }
        Component.onCompleted: Qt.callLater(() => form.showEnd()) // qmllint disable
    }
    SamplePreferences {
        id: record
    }
}
