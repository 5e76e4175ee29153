// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
pragma ComponentBehavior: Bound
import QtQuick
import Veltro.Design
import Veltro.Types

/// The program's name, the tabs, and whether the engine is ready.
Rectangle {
    id: root

    required property int selection
    required property int activeBadge
    required property bool engineReady
    signal selected(int tab)

    color: Theme.sidebar

    readonly property list<string> titles: [qsTr("Home"), qsTr("Queue"), qsTr("Library"), qsTr("Settings")]
    readonly property list<string> symbols: ["house", "arrow.down.circle", "square.stack", "slider.horizontal.3"]

    SidebarHeader {
        id: header
        width: parent.width
    }
    Column {
        x: 10
        anchors.top: header.bottom
        anchors.topMargin: 4
        width: parent.width - 20
        spacing: 2
        Accessible.role: Accessible.PageTabList
        Accessible.name: qsTr("Tabs")

        Repeater {
            model: 4
            delegate: SidebarRow {
                required property int index

                objectName: "tab" + index
                width: parent.width
                text: root.titles[index]
                symbol: root.symbols[index]
                checked: root.selection === index
                badge: index === Tab.Downloads ? root.activeBadge : 0
                onClicked: root.selected(index)
                onStepped: by => root.selected(Math.max(0, Math.min(3, root.selection + by)))
            }
        }
    }
    SidebarFooter {
        anchors.bottom: parent.bottom
        width: parent.width
        ready: root.engineReady
    }
    Rectangle {
        anchors.right: parent.right
        width: 1
        height: parent.height
        color: Theme.hairline
    }
}
