// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import Veltro.Design

/// The program's icon and name.
Item {
    implicitHeight: 28 + 20

    Row {
        x: 14
        y: 10
        spacing: 10

        AppIcon {
            objectName: "appIcon"
            width: 28
            height: 28
        }
        Label {
            objectName: "productName"
            anchors.verticalCenter: parent.verticalCenter
            text: qsTr("Veltro")
            font.pixelSize: 16
            font.weight: Font.DemiBold
        }
    }
}
