// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import Veltro.Design
import Veltro.Downloads
import Veltro.Types

/// The menu of one download.
Menu {
    id: root

    signal copyRequested(text: string)
    signal openRequested(page: url)
    signal showRequested(file: url)
    signal detailsRequested(record: DownloadProgressState)

    function openFor(item: QueueRow, place: point) {
        row.record = item.record;
        root.popup(item, place.x, place.y);
    }

    readonly property DownloadRow target: DownloadRow {
        id: row
    }

    MenuItem {
        text: qsTr("Copy Link")
        onTriggered: root.copyRequested(row.pageText)
    }
    MenuItem {
        text: qsTr("Open Page")
        enabled: row.isWebPage
        onTriggered: root.openRequested(row.page)
    }
    MenuItem {
        text: qsTr("Show in Folder")
        enabled: row.hasFile
        onTriggered: root.showRequested(row.file)
    }
    MenuSeparator {}
    MenuItem {
        text: qsTr("Show Details…")
        onTriggered: root.detailsRequested(row.record)
    }
}
