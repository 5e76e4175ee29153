// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import Veltro.Design
import Veltro.Pictures

/// The page's picture, title and source.
Item {
    id: root

    required property string title
    required property string source
    required property url thumbnail

    signal closeRequested

    implicitHeight: 64 + 32

    Surface {
        id: frame
        objectName: "thumbnailFrame"
        x: 20
        y: 16
        width: 96
        height: 64
        radius: 10
        cornerExponent: 2
        color: Theme.sunken

        Symbol {
            anchors.centerIn: parent
            visible: picture.status !== Thumbnail.Ready
            name: "play.fill"
            size: 22
            color: Theme.inkTertiary
        }
        Thumbnail {
            id: picture
            anchors.fill: parent
            origin: Thumbnail.Web
            source: root.thumbnail
            radius: 10
        }
    }
    Column {
        anchors.left: frame.right
        anchors.leftMargin: 16
        anchors.right: closeButton.left
        anchors.rightMargin: 16
        anchors.verticalCenter: frame.verticalCenter
        spacing: 4

        Label {
            objectName: "title"
            width: parent.width
            text: root.title
            horizontalAlignment: Text.AlignLeft
            elide: Text.ElideRight
            wrapMode: Text.Wrap
            maximumLineCount: 2
            font.pixelSize: 16
            font.weight: Font.DemiBold
            Accessible.role: Accessible.Heading
        }
        Label {
            objectName: "source"
            width: parent.width
            visible: text !== ""
            text: root.source
            horizontalAlignment: Text.AlignLeft
            elide: Text.ElideRight
            maximumLineCount: 1
            color: Theme.inkTertiary
            font.pixelSize: 12
        }
    }
    IconButton {
        id: closeButton
        objectName: "close"
        anchors.right: parent.right
        anchors.rightMargin: 16
        y: 16
        name: "xmark.circle.fill"
        iconSize: 22
        tint: Theme.inkTertiary
        text: qsTr("Close")
        onClicked: root.closeRequested()
    }
}
