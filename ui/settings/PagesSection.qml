// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import Veltro.Settings

/// The product's pages.
SettingsSection {
    id: root

    required property AboutInformation about

    signal pageRequested(page: url)

    LinkRow {
        width: parent.width
        text: qsTr("Support")
        onClicked: root.pageRequested(root.about.supportPage)
    }
    LinkRow {
        width: parent.width
        text: qsTr("Privacy policy")
        onClicked: root.pageRequested(root.about.privacyPage)
    }
    LinkRow {
        width: parent.width
        text: qsTr("Open-source notices")
        onClicked: root.pageRequested(root.about.noticesPage)
    }
}
