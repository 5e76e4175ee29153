// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import Veltro.Design

/// The card with the address. Typing is reported by `edited`; the text shown is what comes in.
Surface {
    id: root

    required property string text
    signal edited(string text)

    function takeFocus() {
        field.forceActiveFocus();
    }

    implicitHeight: 60
    radius: 16
    color: Theme.card
    strokeColor: field.activeFocus ? Theme.accent : Theme.hairline
    strokeWidth: 1
    shadowColor: Theme.shadow(0.05)
    shadowBlur: 16
    shadowOffsetY: 4

    onTextChanged: if (field.text !== root.text)
        field.text = root.text

    LineIcon {
        id: icon
        anchors.left: parent.left
        anchors.leftMargin: 20
        anchors.verticalCenter: parent.verticalCenter
        width: 18
        height: 18
        name: "link"
        color: Theme.inkTertiary
    }
    TextField {
        id: field
        objectName: "urlField"
        anchors.left: icon.right
        anchors.leftMargin: 14
        anchors.right: clear.visible ? clear.left : parent.right
        anchors.rightMargin: 16
        anchors.verticalCenter: parent.verticalCenter
        framed: false
        focus: true
        text: root.text
        placeholderText: qsTr("https://")
        font.pixelSize: 18
        maximumLength: 65536
        inputMethodHints: Qt.ImhUrlCharactersOnly | Qt.ImhNoPredictiveText
        Accessible.name: qsTr("Page address")
        onTextChanged: root.edited(text)
    }
    IconButton {
        id: clear
        objectName: "clear"
        anchors.right: parent.right
        anchors.rightMargin: 16
        anchors.verticalCenter: parent.verticalCenter
        visible: root.text !== ""
        name: "close"
        text: qsTr("Clear")
        onClicked: {
            root.edited("");
            root.takeFocus();
        }
    }
}
