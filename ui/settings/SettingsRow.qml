// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import Veltro.Design

/// A label with its control at the row's end; a rule stands above every row but the first.
Item {
    id: root

    property string text
    default property alias control: controlItem.data

    implicitHeight: Math.max(44, controlItem.childrenRect.height + 14)
    height: implicitHeight

    RowRule {}
    Label {
        anchors.left: parent.left
        anchors.leftMargin: 16
        anchors.right: controlItem.left
        anchors.rightMargin: 12
        anchors.verticalCenter: parent.verticalCenter
        text: root.text
        elide: Text.ElideRight
        Accessible.ignored: true
    }
    Item {
        id: controlItem
        anchors.right: parent.right
        anchors.rightMargin: 16
        anchors.verticalCenter: parent.verticalCenter
        width: childrenRect.width
        height: childrenRect.height
    }
}
