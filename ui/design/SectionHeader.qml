// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import Veltro.Design

/// The title of a part of a screen, with what is put into it at the row's end.
Item {
    id: root

    property string title
    default property alias trailing: trailingRow.data

    implicitWidth: heading.implicitWidth + trailingRow.implicitWidth
    implicitHeight: Math.max(heading.implicitHeight, trailingRow.implicitHeight)

    Label {
        id: heading
        anchors.left: parent.left
        anchors.right: trailingRow.left
        anchors.verticalCenter: parent.verticalCenter
        text: root.title
        elide: Text.ElideRight
        font.pixelSize: 20
        font.weight: Font.DemiBold
        Accessible.role: Accessible.Heading
    }
    Row {
        id: trailingRow
        anchors.right: parent.right
        anchors.verticalCenter: parent.verticalCenter
        spacing: Theme.gap
    }
}
