// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
pragma ComponentBehavior: Bound
import QtQuick
import Veltro.Design

/// The six that were saved last, newest first; nothing at all while there are none.
Column {
    id: root

    required property QtObject items
    signal opened

    readonly property int shownCount: Math.min(6, tiles.count)
    readonly property int columns: Math.max(2, Math.min(6, Math.floor((root.width + 16) / (160 + 16))))

    visible: root.shownCount > 0
    topPadding: 12
    spacing: 14

    SectionHeader {
        width: parent.width
        title: qsTr("Recent")
    }
    Grid {
        width: parent.width
        columns: root.columns
        spacing: 16

        Repeater {
            id: tiles
            model: root.items
            delegate: RecentTile {
                required property int index

                objectName: "recent" + index
                visible: index < 6
                width: (root.width - (root.columns - 1) * 16) / root.columns
                onClicked: root.opened()
            }
        }
    }
}
