// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
pragma ComponentBehavior: Bound
import QtQuick
import Veltro.Design
import Veltro.Library

/// What the player's column says of nothing, and the state of a library without items.
Rectangle {
    color: Theme.page

    LibraryEmptyNote {
        x: (parent.width - 360 - width) / 2
        anchors.verticalCenter: parent.verticalCenter
        width: 380
    }
    LibraryPlayerPane {
        anchors.right: parent.right
        width: 360
        height: parent.height
        screen: LibraryScreen {
            services: null
        }
    }
}
