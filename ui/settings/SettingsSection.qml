// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
pragma ComponentBehavior: Bound
import QtQuick
import Veltro.Design

/// A card of rows under a heading; a section without a title has none.
Column {
    id: root

    property string title
    /// What stands at the end of the heading.
    property alias trailing: trailingItem.data
    default property alias rows: rowColumn.data

    spacing: 8

    Item {
        width: parent.width
        height: Math.max(heading.implicitHeight, trailingItem.childrenRect.height)
        visible: root.title !== ""

        Label {
            id: heading
            anchors.verticalCenter: parent.verticalCenter
            x: 4
            text: root.title
            font.pixelSize: 13
            font.weight: Font.DemiBold
            color: Theme.inkSecondary
            Accessible.role: Accessible.Heading
        }
        Item {
            id: trailingItem
            anchors.right: parent.right
            anchors.verticalCenter: parent.verticalCenter
            width: childrenRect.width
            height: childrenRect.height
        }
    }
    Surface {
        width: parent.width
        height: rowColumn.height
        radius: Theme.cardRadius
        color: Theme.card
        strokeColor: Theme.hairline
        strokeWidth: 1

        Column {
            id: rowColumn
            width: parent.width
            topPadding: 2
            bottomPadding: 2
        }
    }
}
