// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import QtQuick.Templates as T
import Veltro.Design
import Veltro.Types

/// Three counters over the list of downloads, and what can be done with each. Its components are
/// not bound: Qt 6.4 makes a list's header in a context of its own, which a bound one refuses.
FocusScope {
    id: root

    required property ActiveDownloads downloads

    signal clearRequested
    signal cancelRequested(record: DownloadProgressState)
    signal retryRequested(record: DownloadProgressState)
    signal playRequested(file: url)
    signal showRequested(file: url)
    signal openRequested(page: url)
    signal copyRequested(text: string)

    function showEnd() {
        list.positionViewAtEnd();
    }

    Rectangle {
        anchors.fill: parent
        color: Theme.page
    }
    ListView {
        id: list

        anchors.fill: parent
        clip: true
        spacing: 12
        topMargin: 36
        bottomMargin: Theme.pageMargin
        focus: true
        reuseItems: true
        // Rows that are made ahead, in the background, are complained about when they are removed.
        cacheBuffer: 0
        boundsBehavior: Flickable.StopAtBounds
        model: root.downloads
        Accessible.role: Accessible.List
        Accessible.name: qsTr("Downloads")
        T.ScrollBar.vertical: ThinScrollBar {}

        // qmllint disable unqualified
        header: QueueHeader {
            x: Theme.pageMargin
            width: list.width - 2 * Theme.pageMargin
            activeCount: root.downloads.activeCount
            queuedCount: root.downloads.queuedCount
            doneCount: root.downloads.doneCount
            finishedCount: root.downloads.finishedCount
            isEmpty: list.count === 0
            onClearRequested: root.clearRequested()
        }
        delegate: QueueRow {
            x: Theme.pageMargin
            width: list.width - 2 * Theme.pageMargin
            onCancelRequested: root.cancelRequested(record)
            onRetryRequested: root.retryRequested(record)
            onPlayRequested: root.playRequested(download.file)
            onMenuRequested: place => menu.openFor(this, place)
        }
        // qmllint enable unqualified
    }

    QueueRowMenu {
        id: menu

        onCopyRequested: text => root.copyRequested(text)
        onOpenRequested: page => root.openRequested(page)
        onShowRequested: file => root.showRequested(file)
        onDetailsRequested: record => details.openFor(record)
    }
    DownloadDetails {
        id: details
    }
}
