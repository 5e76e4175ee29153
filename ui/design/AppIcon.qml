// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import Veltro.Design

/// The program's icon: an arrow that lands on a line, on the accent colour.
Surface {
    id: root

    readonly property real unit: width / 28

    implicitWidth: 28
    implicitHeight: 28
    radius: 8 * unit
    color: Theme.accent
    Accessible.role: Accessible.Graphic
    Accessible.name: qsTr("Veltro")

    LineIcon {
        anchors.fill: parent
        anchors.margins: 5 * root.unit
        name: "appMark"
        stroke: 2.8
        color: "#FFFFFF"
    }
}
