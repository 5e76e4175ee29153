// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
pragma ComponentBehavior: Bound
import QtQuick
import QtQuick.Templates as T
import Veltro.Design
import Veltro.Downloads
import Veltro.Types

/// One download: what it is, how far it is, and what can be done with it now.
T.ItemDelegate {
    id: root

    required property DownloadProgressState record
    readonly property DownloadRow download: row

    signal cancelRequested
    signal retryRequested
    signal playRequested
    signal menuRequested(place: point)

    objectName: "queueRow"
    implicitHeight: Math.max(tile.height, texts.height) + 36
    height: implicitHeight
    focusPolicy: Qt.TabFocus
    Accessible.role: Accessible.ListItem
    Accessible.name: row.title
    Accessible.description: row.description
    Accessible.focusable: true
    Keys.onPressed: event => {
        const isMenuKey = event.key === Qt.Key_Menu || (event.key === Qt.Key_F10 && event.modifiers === Qt.ShiftModifier);
        if (isMenuKey) {
            root.menuRequested(Qt.point(58, texts.y + texts.height / 2));
            event.accepted = true;
        }
    }
    // A row that is used again shows another download: the bar does not run to its share.
    ListView.onPooled: texts.isSettled = false
    ListView.onReused: texts.isSettled = true

    DownloadRow {
        id: row
        record: root.record
    }
    TapHandler {
        acceptedButtons: Qt.RightButton
        onTapped: eventPoint => root.menuRequested(eventPoint.position)
    }
    background: Surface {
        radius: Theme.cardRadius
        color: Theme.card
        strokeColor: Theme.hairline
        strokeWidth: 1

        FocusRing {
            shown: root.visualFocus
            radius: Theme.cardRadius + 2
        }
    }

    Surface {
        id: tile
        objectName: "tile"
        x: 18
        anchors.verticalCenter: parent.verticalCenter
        width: 40
        height: 40
        radius: 10
        color: Theme.sunken

        LineIcon {
            anchors.centerIn: parent
            width: 18
            height: 18
            name: "film"
            color: Theme.ink
        }
    }
    QueueRowTexts {
        id: texts
        objectName: "texts"
        anchors.left: tile.right
        anchors.leftMargin: 14
        anchors.right: actions.left
        anchors.rightMargin: 14
        y: 18
        row: row
    }
    QueueRowActions {
        id: actions
        anchors.right: parent.right
        anchors.rightMargin: 18
        anchors.verticalCenter: parent.verticalCenter
        row: row
        onCancelRequested: root.cancelRequested()
        onRetryRequested: root.retryRequested()
        onPlayRequested: root.playRequested()
    }
}
