// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import Veltro.Settings

/// What the program is made of.
SettingsSection {
    id: root

    required property AboutInformation about

    title: qsTr("Veltro")

    InfoRow {
        width: parent.width
        text: qsTr("Version")
        value: root.about.version
    }
    InfoRow {
        width: parent.width
        text: qsTr("Engine")
        value: qsTr("Embedded · on-device")
    }
    InfoRow {
        width: parent.width
        text: qsTr("Audio / video")
        value: qsTr("Bundled toolkit")
    }
    InfoRow {
        width: parent.width
        text: qsTr("Storage")
        value: qsTr("User Downloads folder")
    }
}
