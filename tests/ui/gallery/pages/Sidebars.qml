// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import Veltro.App
import Veltro.Design
import Veltro.Types

/// The sidebar: at the start, ready with downloads under way, and at its narrowest with very many.
Rectangle {
    color: Theme.page

    Row {
        height: parent.height
        spacing: 60

        Sidebar {
            objectName: "booting"
            width: 280
            height: parent.height
            selection: Tab.Home
            activeBadge: 0
            engineReady: false
        }
        Sidebar {
            objectName: "ready"
            width: 240
            height: parent.height
            selection: Tab.Library
            activeBadge: 3
            engineReady: true
        }
        Sidebar {
            objectName: "crowded"
            width: 220
            height: parent.height
            selection: Tab.Downloads
            activeBadge: 12345
            engineReady: true
        }
    }
}
