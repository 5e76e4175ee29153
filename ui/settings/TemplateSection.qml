// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import Veltro.Design
import Veltro.Settings

/// How files are named.
SettingsSection {
    id: root

    required property SettingsModel settings

    title: qsTr("Output template")

    Item {
        width: parent.width
        height: 48

        TextField {
            objectName: "outputTemplate"
            x: 10
            width: parent.width - 20
            anchors.verticalCenter: parent.verticalCenter
            placeholderText: "%(title)s [%(id)s].%(ext)s"
            text: root.settings.outputTemplate
            font.family: "monospace"
            Accessible.name: qsTr("Output template")
            onTextEdited: root.settings.outputTemplate = text
        }
    }
}
