// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import Veltro.Settings

/// The product's pages, as many as there are.
SettingsSection {
    id: root

    required property AboutInformation about

    readonly property bool any: String(root.about.supportPage) + String(root.about.privacyPage) + String(root.about.noticesPage) !== ""

    signal pageRequested(page: url)

    visible: root.any

    LinkRow {
        objectName: "support"
        width: parent.width
        visible: String(root.about.supportPage) !== ""
        text: qsTr("Support")
        onClicked: root.pageRequested(root.about.supportPage)
    }
    LinkRow {
        objectName: "privacy"
        width: parent.width
        visible: String(root.about.privacyPage) !== ""
        text: qsTr("Privacy policy")
        onClicked: root.pageRequested(root.about.privacyPage)
    }
    LinkRow {
        objectName: "notices"
        width: parent.width
        visible: String(root.about.noticesPage) !== ""
        text: qsTr("Open-source notices")
        onClicked: root.pageRequested(root.about.noticesPage)
    }
}
