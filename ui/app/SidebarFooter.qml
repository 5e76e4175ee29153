// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import Veltro.Design

/// Whether the engine is ready for links.
Item {
    id: root

    required property bool ready

    implicitHeight: caption.implicitHeight + 20

    Row {
        x: 14
        y: 12
        spacing: 8

        StatusDot {
            objectName: "engineDot"
            anchors.verticalCenter: parent.verticalCenter
            color: root.ready ? Theme.success : Theme.warning
        }
        Label {
            id: caption
            objectName: "engineCaption"
            text: root.ready ? qsTr("Engine ready") : qsTr("Booting…")
            color: Theme.inkSecondary
            font.pixelSize: 11
            font.weight: Font.Medium
        }
    }
}
