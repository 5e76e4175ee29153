// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
pragma ComponentBehavior: Bound
import QtQuick
import QtQuick.Templates as T
import Veltro.Design
import Veltro.Settings

/// Every setting in one column, from the default quality to the program's own pages.
FocusScope {
    id: root

    required property SettingsModel settings
    /// Rows with a host and a date.
    property alias sites: sitesSection.sites
    property AboutInformation about: AboutInformation {}

    signal pageRequested(page: url)
    signal siteRemoved(host: string)
    signal siteAdditionRequested

    // Who came by a key begins on the first control. With a pointer the arrow keys would change it
    // unseen.
    Component.onCompleted: if (LastInput.isKey())
        column.nextItemInFocusChain(true).focus = true

    function showEnd() {
        view.contentY = Math.max(0, view.contentHeight - view.height);
    }

    Rectangle {
        anchors.fill: parent
        color: Theme.page
    }
    Flickable {
        id: view
        focus: true
        objectName: "settingsView"
        anchors.fill: parent
        clip: true
        contentHeight: column.height
        boundsBehavior: Flickable.StopAtBounds
        T.ScrollBar.vertical: ThinScrollBar {}

        // What has the keyboard's focus is in view.
        function reveal(item: Item) {
            const top = item.mapToItem(column, 0, 0).y;
            if (top - 24 < view.contentY) {
                view.contentY = Math.max(0, top - 24);
            } else if (top + item.height + 24 > view.contentY + view.height) {
                view.contentY = Math.min(view.contentHeight - view.height, top + item.height + 24 - view.height);
            }
        }

        Column {
            id: column
            x: Math.round((view.width - width) / 2)
            width: Math.min(view.width - 48, 640)
            topPadding: 28
            bottomPadding: 32
            spacing: 24

            QualitySection {
                width: parent.width
                settings: root.settings
            }
            SubtitlesSection {
                width: parent.width
                settings: root.settings
            }
            TemplateSection {
                width: parent.width
                settings: root.settings
            }
            SettingsSection {
                width: parent.width
                title: qsTr("Network")

                ToggleRow {
                    width: parent.width
                    text: qsTr("Wi-Fi only")
                    isOn: root.settings.wifiOnly
                    onSwitched: on => root.settings.wifiOnly = on
                }
            }
            SitesSection {
                id: sitesSection
                width: parent.width
                onRemoved: host => root.siteRemoved(host)
                onAdditionRequested: root.siteAdditionRequested()
            }
            AboutSection {
                width: parent.width
                about: root.about
            }
            PagesSection {
                width: parent.width
                about: root.about
                onPageRequested: page => root.pageRequested(page)
            }
        }
    }
    Connections {
        function onActiveFocusItemChanged() {
            let item = root.Window.activeFocusItem;
            for (let above = item; above; above = above.parent) {
                if (above === column) {
                    view.reveal(item);
                    return;
                }
            }
        }
        target: root.Window.window
    }
}
