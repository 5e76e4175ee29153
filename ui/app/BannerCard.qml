// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import Veltro.Design

/// The card of the banners that speak of a download: what is put into it in a row, at least 360
/// wide. Its second line keeps the last text while the banner leaves.
Surface {
    id: root

    required property string title
    required property string detail
    property real maximumWidth: 720
    property string lastDetail
    property alias leading: leadingHolder.data
    property alias trailing: trailingHolder.data

    implicitWidth: Math.min(root.maximumWidth, Math.max(360, leadingHolder.width + texts.naturalWidth + trailingHolder.width + 24 + 32))
    implicitHeight: Math.max(leadingHolder.height, texts.implicitHeight, trailingHolder.height) + 24
    radius: 14
    color: Theme.card
    strokeColor: Theme.hairline
    strokeWidth: 1
    shadowColor: Theme.shadow(0.1)
    shadowBlur: 16
    shadowOffsetY: 8
    Accessible.role: Accessible.AlertMessage
    Accessible.name: root.title
    Accessible.description: root.lastDetail

    onDetailChanged: if (root.detail !== "")
        root.lastDetail = root.detail
    Component.onCompleted: root.lastDetail = root.detail

    Item {
        id: leadingHolder
        x: 16
        anchors.verticalCenter: parent.verticalCenter
        width: childrenRect.width
        height: childrenRect.height
    }
    Column {
        id: texts

        readonly property real naturalWidth: Math.max(titleLabel.implicitWidth, detailLabel.implicitWidth)

        anchors.left: leadingHolder.right
        anchors.leftMargin: 12
        anchors.right: trailingHolder.left
        anchors.rightMargin: 12
        anchors.verticalCenter: parent.verticalCenter
        spacing: 2

        Label {
            id: titleLabel
            width: parent.width
            text: root.title
            elide: Text.ElideRight
            font.weight: Font.DemiBold
        }
        Label {
            id: detailLabel
            width: parent.width
            text: root.lastDetail
            elide: Text.ElideRight
            maximumLineCount: 1
            color: Theme.inkSecondary
            font.pixelSize: 12
        }
    }
    Row {
        id: trailingHolder
        anchors.right: parent.right
        anchors.rightMargin: 16
        anchors.verticalCenter: parent.verticalCenter
        spacing: 12
    }
}
