// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import QtQuick.Templates as T
import Veltro.Design

/// What is known of updates, and what can be done about one.
Column {
    id: root

    property string title
    property string message
    property string notes
    property real progress
    property bool offers: false
    property bool canInstall: false
    property bool downloads: false
    property bool isReady: false

    signal skipRequested
    signal laterRequested
    signal installRequested
    signal restartRequested

    function takeFocus() {
        closeButton.forceActiveFocus();
    }

    spacing: 12

    Label {
        width: parent.width
        text: root.title
        elide: Text.ElideRight
        font.pixelSize: 15
        font.weight: Font.DemiBold
        Accessible.role: Accessible.Heading
    }
    Label {
        objectName: "updateMessage"
        width: parent.width
        text: root.message
        color: Theme.inkSecondary
        wrapMode: Text.Wrap
    }
    Surface {
        width: parent.width
        height: 160
        visible: root.offers && root.notes !== ""
        radius: 10
        strokeColor: Theme.hairline
        strokeWidth: 1

        Flickable {
            anchors.fill: parent
            anchors.margins: 12
            contentHeight: notesLabel.implicitHeight
            clip: true
            boundsBehavior: Flickable.StopAtBounds
            T.ScrollBar.vertical: ThinScrollBar {
                policy: T.ScrollBar.AlwaysOn
            }

            Label {
                id: notesLabel
                width: parent.width
                text: root.notes
                wrapMode: Text.Wrap
            }
        }
    }
    Rectangle {
        width: parent.width
        height: 4
        radius: 2
        visible: root.downloads
        color: Theme.hairline
        Accessible.role: Accessible.ProgressBar
        Accessible.name: qsTr("Download of the update")

        Rectangle {
            width: parent.width * root.progress
            height: 4
            radius: 2
            color: Theme.accent
        }
    }
    Row {
        anchors.right: parent.right
        topPadding: 4
        spacing: Theme.gap

        CapsuleButton {
            visible: root.offers
            text: qsTr("Skip This Version")
            ground: "transparent"
            foreground: Theme.inkSecondary
            onClicked: root.skipRequested()
        }
        CapsuleButton {
            id: closeButton
            text: root.offers || root.isReady ? qsTr("Later") : qsTr("OK")
            ground: Theme.card
            foreground: Theme.ink
            strokeColor: Theme.hairline
            onClicked: root.laterRequested()
        }
        CapsuleButton {
            visible: root.offers && root.canInstall
            text: qsTr("Install")
            onClicked: root.installRequested()
        }
        CapsuleButton {
            visible: root.isReady
            text: qsTr("Restart Now")
            onClicked: root.restartRequested()
        }
    }
}
