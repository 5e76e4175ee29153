// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
pragma ComponentBehavior: Bound
import QtQuick
import Veltro.Design

/// The sites whose cookies are saved, and a way to add one.
SettingsSection {
    id: root

    /// Rows with a host and a date, in their order.
    property QtObject sites: null

    signal removed(host: string)
    signal additionRequested

    title: qsTr("Logged-in sites")
    trailing: CapsuleButton {
        objectName: "addSite"
        text: qsTr("Add a site…")
        ground: Theme.faded(Theme.accent, 0.1)
        foreground: Theme.accent
        horizontalPadding: 12
        verticalPadding: 5
        onClicked: root.additionRequested()
    }

    Label {
        objectName: "noSites"
        visible: siteRows.count === 0
        width: parent.width
        padding: 14
        leftPadding: 16
        rightPadding: 16
        text: qsTr("Sign in to a site, then save its cookies so Veltro can reuse them. Saved sites will appear here.")
        wrapMode: Text.Wrap
        color: Theme.inkSecondary
        lineHeight: 1.15
    }
    Repeater {
        id: siteRows
        model: root.sites
        delegate: SiteRow {
            width: root.width
            onRemoved: root.removed(host)
        }
    }
}
