// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import QtQuick.Templates as T
import Veltro.Design

/// The line between two groups of a menu.
T.MenuSeparator {
    implicitWidth: 170
    implicitHeight: 9
    Accessible.ignored: true

    contentItem: Item {
        HairlineDivider {
            anchors.verticalCenter: parent.verticalCenter
        }
    }
    leftPadding: 12
    rightPadding: 12
}
