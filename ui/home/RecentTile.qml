// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import QtQuick.Templates as T
import Veltro.Design
import Veltro.Pictures

/// One saved item: its picture, title and host.
T.AbstractButton {
    id: root

    required property string title
    required property string host
    required property url thumbnailFileUrl

    implicitHeight: picture.height + titleLabel.implicitHeight + hostLabel.implicitHeight + 24 + 14
    padding: 12
    hoverEnabled: true
    focusPolicy: Qt.StrongFocus
    text: root.title
    Accessible.role: Accessible.Button
    Accessible.name: root.title
    Accessible.description: root.host
    Accessible.onPressAction: root.clicked()

    contentItem: Item {
        Rectangle {
            id: picture
            objectName: "picture"
            width: parent.width
            height: Math.round(width * 9 / 16)
            radius: 8
            color: Theme.sunken

            LineIcon {
                anchors.centerIn: parent
                visible: image.status !== Thumbnail.Ready
                width: 22
                height: 22
                name: "play"
                color: Theme.inkTertiary
            }
            Thumbnail {
                id: image
                anchors.fill: parent
                source: root.thumbnailFileUrl
                radius: parent.radius
            }
        }
        Label {
            id: titleLabel
            anchors.top: picture.bottom
            anchors.topMargin: 10
            width: parent.width
            text: root.title
            elide: Text.ElideRight
            maximumLineCount: 1
            font.pixelSize: 14
            font.weight: Font.DemiBold
            Accessible.ignored: true
        }
        Label {
            id: hostLabel
            anchors.top: titleLabel.bottom
            anchors.topMargin: 4
            width: parent.width
            text: root.host
            elide: Text.ElideRight
            color: Theme.inkTertiary
            font.pixelSize: 12
            Accessible.ignored: true
        }
    }
    background: Surface {
        radius: Theme.cardRadius
        color: Theme.card
        strokeColor: root.hovered ? Theme.inkTertiary : Theme.hairline
        strokeWidth: 1
        shadowColor: Theme.shadow(0.04)
        shadowBlur: 12
        shadowOffsetY: 3

        FocusRing {
            shown: root.visualFocus
            radius: Theme.cardRadius + 2
        }
    }
}
