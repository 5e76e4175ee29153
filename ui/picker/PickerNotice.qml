// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import Veltro.Design

/// One line about a list, and a button for what can be saved.
Item {
    id: root

    required property string reason
    required property string offer

    signal offerTaken

    function takeFocus() {
        offerButton.forceActiveFocus();
    }

    implicitHeight: column.implicitHeight + 32

    Column {
        id: column
        anchors.centerIn: parent
        width: parent.width - 48
        spacing: 12

        Label {
            objectName: "reason"
            width: parent.width
            horizontalAlignment: Text.AlignHCenter
            text: root.reason
            wrapMode: Text.Wrap
            color: Theme.inkSecondary
            font.pixelSize: 13
        }
        CapsuleButton {
            id: offerButton
            objectName: "offer"
            anchors.horizontalCenter: parent.horizontalCenter
            width: Math.min(implicitWidth, parent.width)
            visible: root.offer !== ""
            text: root.offer
            font.pixelSize: 13
            horizontalPadding: 18
            onClicked: root.offerTaken()
        }
    }
}
