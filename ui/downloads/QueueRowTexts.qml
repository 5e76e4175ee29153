// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
pragma ComponentBehavior: Bound
import QtQuick
import Veltro.Design
import Veltro.Downloads

/// The lines of a download, with the bar between them while a share is known. A screen reader has
/// all of it from the row.
Column {
    id: root

    required property DownloadRow row
    property bool isSettled: true
    readonly property color tint: {
        switch (root.row.statusTint) {
        case DownloadRow.Accent:
            return Theme.accent;
        case DownloadRow.Warning:
            return Theme.warning;
        case DownloadRow.Success:
            return Theme.success;
        case DownloadRow.Danger:
            return Theme.danger;
        default:
            return Theme.neutral;
        }
    }

    spacing: 4

    Label {
        objectName: "title"
        width: parent.width
        text: root.row.title
        horizontalAlignment: Text.AlignLeft
        elide: Text.ElideRight
        maximumLineCount: 1
        font.pixelSize: 15
        font.weight: Font.DemiBold
        Accessible.ignored: true
    }
    Label {
        objectName: "host"
        width: parent.width
        text: root.row.host
        horizontalAlignment: Text.AlignLeft
        elide: Text.ElideRight
        maximumLineCount: 1
        color: Theme.inkTertiary
        font.pixelSize: 12
        Accessible.ignored: true
    }
    Label {
        objectName: "status"
        text: root.row.status
        color: root.tint
        font.pixelSize: 12
        font.weight: Font.DemiBold
        Accessible.ignored: true
    }
    Item {
        visible: root.row.hasFraction
        width: parent.width
        height: bar.height + 6

        ProgressTrack {
            id: bar
            objectName: "bar"
            y: 3
            width: parent.width
            fraction: root.row.fraction
            animated: root.isSettled
        }
    }
    Row {
        objectName: "detail"
        spacing: 8

        Label {
            text: root.row.position
            color: Theme.inkSecondary
            font.pixelSize: 12
            Accessible.ignored: true
        }
        Repeater {
            model: [root.row.total, root.row.speed, root.row.timeLeft]
            delegate: Label {
                required property string modelData

                visible: modelData !== ""
                text: modelData
                color: Theme.inkTertiary
                font.pixelSize: 12
                Accessible.ignored: true
            }
        }
    }
}
