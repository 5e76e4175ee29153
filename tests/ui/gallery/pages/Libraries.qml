// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import Veltro.Design
import Veltro.Library

/// The library with one of its items chosen, or all.
Rectangle {
    id: root

    required property string scene

    color: Theme.page

    LibraryMacView {
        id: view
        anchors.fill: parent
        store: null

        Connections {
            function onRowsInserted() {
                if (root.scene === "LibraryMany")
                    view.screen.selection.selectAll();
                else
                    view.screen.selection.move(0, Qt.NoModifier);
            }
            target: view.screen.items
        }
    }
}
