// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import QtQuick.Templates as T
import Veltro.Design
import Veltro.Types

/// What a check for updates found: notes, and install, later or skip.
Sheet {
    id: root

    required property UpdateManager updates
    readonly property bool offers: root.updates.state === UpdateState.Available
    readonly property bool isReady: root.updates.state === UpdateState.Ready

    width: 440
    height: column.implicitHeight + 48
    accessibleName: qsTr("Updates")
    onClosed: root.updates.later()
    onOpened: closeButton.forceActiveFocus()

    readonly property Connections follow: Connections {
        function onIsShownChanged() {
            if (root.updates.isShown)
                root.open();
            else
                root.close();
        }
        target: root.updates
    }

    contentItem: FocusScope {
        focus: true

        Column {
            id: column
            x: 24
            y: 24
            width: parent.width - 48
            spacing: 12

            Label {
                width: parent.width
                text: root.offers ? qsTr("Veltro %1 is available").arg(root.updates.version) : qsTr("Updates")
                elide: Text.ElideRight
                font.pixelSize: 15
                font.weight: Font.DemiBold
                Accessible.role: Accessible.Heading
            }
            Label {
                objectName: "updateMessage"
                width: parent.width
                text: root.updates.message
                color: Theme.inkSecondary
                wrapMode: Text.Wrap
            }
            Surface {
                width: parent.width
                height: 160
                visible: root.offers && root.updates.notes !== ""
                radius: 10
                strokeColor: Theme.hairline
                strokeWidth: 1

                Flickable {
                    anchors.fill: parent
                    anchors.margins: 12
                    contentHeight: notes.implicitHeight
                    clip: true
                    boundsBehavior: Flickable.StopAtBounds
                    T.ScrollBar.vertical: ThinScrollBar {}

                    Label {
                        id: notes
                        width: parent.width
                        text: root.updates.notes
                        wrapMode: Text.Wrap
                    }
                }
            }
            Rectangle {
                width: parent.width
                height: 4
                radius: 2
                visible: root.updates.state === UpdateState.Downloading
                color: Theme.sunken
                Accessible.role: Accessible.ProgressBar
                Accessible.name: qsTr("Download of the update")

                Rectangle {
                    width: parent.width * root.updates.progress
                    height: 4
                    radius: 2
                    color: Theme.accent
                }
            }
            Row {
                anchors.right: parent.right
                spacing: 8

                CapsuleButton {
                    visible: root.offers
                    text: qsTr("Skip This Version")
                    ground: "transparent"
                    foreground: Theme.inkSecondary
                    onClicked: root.updates.skip()
                }
                CapsuleButton {
                    id: closeButton
                    text: root.offers || root.isReady ? qsTr("Later") : qsTr("OK")
                    ground: Theme.card
                    foreground: Theme.ink
                    strokeColor: Theme.hairline
                    onClicked: root.close()
                    Keys.onReturnPressed: root.close()
                    Keys.onEnterPressed: root.close()
                }
                CapsuleButton {
                    visible: root.offers && root.updates.canInstall
                    text: qsTr("Install")
                    onClicked: root.updates.install()
                }
                CapsuleButton {
                    visible: root.isReady
                    text: qsTr("Restart Now")
                    onClicked: root.updates.relaunch()
                }
            }
        }
    }
}
