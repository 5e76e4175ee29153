// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import Veltro.Design
import Veltro.Library

/// The library with all of its items chosen.
Rectangle {
    color: Theme.page

    LibraryMacView {
        id: view
        anchors.fill: parent
        store: null

        Connections {
            function onRowsInserted() {
                view.screen.selection.selectAll();
            }
            target: view.screen.items
        }
    }
}
