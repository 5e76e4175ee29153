// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
pragma ComponentBehavior: Bound
import QtQuick
import QtQuick.Templates as T
import Veltro.Design
import Veltro.Downloads
import Veltro.Types

/// All that is known of one download, in words that can be copied.
Sheet {
    id: root

    function openFor(record: DownloadProgressState) {
        row.record = record;
        root.open();
    }

    readonly property DownloadRow target: DownloadRow {
        id: row
    }

    width: Math.min(520, parent ? parent.width - 40 : 520)
    height: Math.min(column.implicitHeight + 44, parent ? parent.height - 40 : 480)
    accessibleName: qsTr("Download details")
    onOpened: closeButton.forceActiveFocus()

    contentItem: ButtonScope {
        focus: true

        Label {
            id: heading
            x: 24
            y: 22
            width: parent.width - 48
            text: row.title
            elide: Text.ElideRight
            maximumLineCount: 2
            wrapMode: Text.Wrap
            font.pixelSize: 16
            font.weight: Font.DemiBold
            Accessible.role: Accessible.Heading
        }
        Flickable {
            anchors.top: heading.bottom
            anchors.topMargin: 14
            anchors.bottom: closeButton.top
            anchors.bottomMargin: 14
            x: 24
            width: parent.width - 48
            contentHeight: lines.implicitHeight
            clip: true
            boundsBehavior: Flickable.StopAtBounds
            T.ScrollBar.vertical: ThinScrollBar {}

            Column {
                id: lines
                width: parent.width - 12
                spacing: 10

                DetailLine {
                    width: parent.width
                    title: qsTr("Page")
                    text: row.pageText
                }
                DetailLine {
                    width: parent.width
                    title: qsTr("Status")
                    text: row.status
                }
                DetailLine {
                    width: parent.width
                    title: qsTr("Step")
                    text: row.stage
                }
                DetailLine {
                    width: parent.width
                    title: qsTr("Reason")
                    text: row.failure
                }
                DetailLine {
                    width: parent.width
                    title: qsTr("File")
                    text: row.filePath
                }
            }
        }
        CapsuleButton {
            id: closeButton
            anchors.right: parent.right
            anchors.bottom: parent.bottom
            anchors.rightMargin: 24
            anchors.bottomMargin: 22
            focus: true
            text: qsTr("Close")
            font.pixelSize: 13
            horizontalPadding: 22
            onClicked: root.close()
        }
        // What the sheet would be high if all of it were to be seen.
        Item {
            id: column
            implicitHeight: heading.height + 14 + lines.implicitHeight + 14 + closeButton.height
        }
    }
}
