// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
pragma ComponentBehavior: Bound
import QtQuick
import QtQuick.Templates as T
import Veltro.Design

/// The title, the counters, and what stands in place of an empty list.
Column {
    id: root

    required property int activeCount
    required property int queuedCount
    required property int doneCount
    required property int finishedCount
    required property bool isEmpty

    signal clearRequested

    spacing: 20
    bottomPadding: 20

    Item {
        width: parent.width
        height: heading.height

        Label {
            id: heading
            objectName: "queueTitle"
            text: qsTr("Downloads")
            font.family: Theme.displayFamily
            font.pixelSize: 38
            font.weight: Font.Bold
            font.letterSpacing: -0.8
            Accessible.role: Accessible.Heading
        }
        T.Button {
            id: clear
            objectName: "clearFinished"
            anchors.right: parent.right
            anchors.rightMargin: -clear.rightPadding // the words end where the cards do
            anchors.verticalCenter: parent.verticalCenter
            visible: root.finishedCount > 0
            implicitWidth: implicitContentWidth + 16
            implicitHeight: implicitContentHeight + 12
            padding: 6
            horizontalPadding: 8
            focusPolicy: Qt.StrongFocus
            hoverEnabled: true
            Accessible.role: Accessible.Button
            Accessible.name: qsTr("Clear finished downloads")
            Accessible.onPressAction: root.clearRequested()
            onClicked: root.clearRequested()

            contentItem: Row {
                spacing: 5
                opacity: clear.down ? 0.6 : 1

                LineIcon {
                    anchors.verticalCenter: parent.verticalCenter
                    width: 12
                    height: 12
                    name: "close"
                    stroke: 2.4
                    color: Theme.ink
                }
                Label {
                    text: qsTr("Clear finished")
                    font.pixelSize: 12
                    font.weight: Font.DemiBold
                    Accessible.ignored: true
                }
            }
            background: Surface {
                radius: 8
                color: clear.hovered ? Theme.hover : "transparent"

                FocusRing {
                    shown: clear.visualFocus
                    radius: 10
                    inset: -2
                }
            }
        }
    }

    Surface {
        objectName: "counters"
        width: parent.width
        height: 76
        radius: Theme.cardRadius
        color: Theme.card
        strokeColor: Theme.hairline
        strokeWidth: 1

        Row {
            anchors.fill: parent

            QueueCounter {
                objectName: "active"
                width: root.width / 3
                height: parent.height
                title: qsTr("Active")
                count: root.activeCount
            }
            QueueCounter {
                objectName: "queued"
                width: root.width / 3
                height: parent.height
                hasRule: true
                title: qsTr("Queued")
                count: root.queuedCount
            }
            QueueCounter {
                objectName: "done"
                width: root.width / 3
                height: parent.height
                hasRule: true
                title: qsTr("Done")
                count: root.doneCount
            }
        }
    }

    Column {
        objectName: "emptyQueue"
        visible: root.isEmpty
        width: parent.width
        topPadding: 96
        spacing: 8

        Label {
            width: parent.width
            horizontalAlignment: Text.AlignHCenter
            text: qsTr("Nothing in the queue")
            font.pixelSize: 22
            font.weight: Font.DemiBold
        }
        Label {
            width: parent.width
            horizontalAlignment: Text.AlignHCenter
            wrapMode: Text.Wrap
            text: qsTr("Paste a link on the Home tab. Active and finished downloads show up here.")
            color: Theme.inkSecondary
            font.pixelSize: 14
        }
    }
}
