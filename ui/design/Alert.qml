// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
pragma ComponentBehavior: Bound
import QtQuick
import QtQuick.Templates as T
import Veltro.Design

/// A question or a message over the window: one button, or two when `cancelText` is set.
/// Return takes `acceptText`, Escape closes.
Sheet {
    id: root

    property string message
    property string acceptText: qsTr("OK")
    property string cancelText
    property bool destructive: false

    width: 380
    height: column.implicitHeight + 44
    accessibleName: root.title

    onOpened: acceptButton.forceActiveFocus()

    contentItem: ButtonScope {
        focus: true
        Keys.onUpPressed: message.scroll(-40)
        Keys.onDownPressed: message.scroll(40)

        Column {
            id: column
            x: 24
            y: 22
            width: parent.width - 48
            spacing: 8

            Label {
                width: parent.width
                text: root.title
                wrapMode: Text.Wrap
                font.pixelSize: 15
                font.weight: Font.DemiBold
                Accessible.role: Accessible.AlertMessage
            }
            Flickable {
                id: message

                function scroll(by: real) {
                    message.contentY = Math.max(0, Math.min(message.contentHeight - message.height, message.contentY + by));
                }

                width: parent.width
                height: Math.min(messageLabel.implicitHeight, 260)
                contentHeight: messageLabel.implicitHeight
                clip: contentHeight > height
                interactive: contentHeight > height
                boundsBehavior: Flickable.StopAtBounds
                T.ScrollBar.vertical: ThinScrollBar {
                    policy: T.ScrollBar.AlwaysOn // or nobody would know that there is more
                }

                Label {
                    id: messageLabel
                    width: parent.width
                    text: root.message
                    color: Theme.inkSecondary
                    wrapMode: Text.Wrap
                    lineHeight: 1.2
                }
            }
            Item {
                width: 1
                height: 6
            }
            Row {
                anchors.right: parent.right
                spacing: Theme.gap

                CapsuleButton {
                    visible: root.cancelText !== ""
                    text: root.cancelText
                    ground: Theme.card
                    foreground: Theme.ink
                    strokeColor: Theme.hairline
                    font.pixelSize: 13
                    horizontalPadding: 18
                    onClicked: root.close()
                }
                CapsuleButton {
                    id: acceptButton
                    focus: true
                    text: root.acceptText
                    ground: root.destructive ? Theme.danger : Theme.accent
                    font.pixelSize: 13
                    horizontalPadding: 22
                    onClicked: root.accept()
                }
            }
        }
    }
}
