// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import Veltro.Design
import Veltro.Settings

/// The program's icon, name and version.
Sheet {
    id: root

    width: 300
    height: column.implicitHeight + 52
    accessibleName: qsTr("About Veltro")
    onOpened: closeButton.forceActiveFocus()

    AboutInformation {
        id: information
    }
    contentItem: ButtonScope {
        focus: true

        Column {
            id: column
            y: 28
            width: parent.width
            spacing: 8

            AppIcon {
                anchors.horizontalCenter: parent.horizontalCenter
                width: 72
                height: 72
            }
            Label {
                anchors.horizontalCenter: parent.horizontalCenter
                text: qsTr("Veltro")
                font.pixelSize: 18
                font.weight: Font.DemiBold
            }
            Label {
                objectName: "aboutVersion"
                anchors.horizontalCenter: parent.horizontalCenter
                text: qsTr("Version %1").arg(information.version)
                color: Theme.inkTertiary
                font.pixelSize: 12
            }
            Item {
                width: 1
                height: 4
            }
            CapsuleButton {
                id: closeButton
                anchors.horizontalCenter: parent.horizontalCenter
                text: qsTr("OK")
                horizontalPadding: 24
                onClicked: root.close()
            }
        }
    }
}
