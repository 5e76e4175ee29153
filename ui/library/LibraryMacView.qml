// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
pragma ComponentBehavior: Bound
import QtQuick
import QtQuick.Templates as T
import Veltro.Design
import Veltro.Library

/// Everything that was saved: tiles to search and choose from, and the player beside them.
FocusScope {
    id: root

    /// Each screen is handed the coordinator; this one works with the library itself.
    required property QtObject store
    readonly property alias screen: library

    function focusSearch() {
        header.focusSearch();
    }

    LibraryScreen {
        id: library
        services: LibraryServices
    }

    Connections {
        function onItemShown() {
            grid.showCurrent();
        }
        target: library
    }

    // Keys of the screen: a text field that has the focus takes them first.
    Shortcut {
        enabled: root.visible && root.enabled
        sequences: ["Ctrl+A"]
        onActivated: library.selection.selectAll()
    }
    Shortcut {
        enabled: root.visible && root.enabled
        sequences: ["Del", "Ctrl+Del"]
        onActivated: library.deleteSelected()
    }
    Shortcut {
        enabled: root.visible && root.enabled
        sequences: ["Ctrl+F"]
        onActivated: header.focusSearch()
    }

    T.SplitView {
        id: split
        anchors.fill: parent
        orientation: Qt.Horizontal
        handle: Item {
            id: divider

            function move(by: real) {
                const most = split.width - 360 - divider.width;
                library.rememberPlayerWidth(Math.max(320, Math.min(most, pane.width - by)));
            }

            implicitWidth: 9
            activeFocusOnTab: true
            Accessible.role: Accessible.Splitter
            Accessible.name: qsTr("Width of the player")
            Accessible.focusable: true
            Accessible.onDecreaseAction: divider.move(10)
            Accessible.onIncreaseAction: divider.move(-10)
            Keys.onLeftPressed: divider.move(-10)
            Keys.onRightPressed: divider.move(10)

            Rectangle {
                anchors.horizontalCenter: parent.horizontalCenter
                width: divider.activeFocus ? 3 : 1
                height: parent.height
                color: divider.activeFocus ? Theme.focus : divider.T.SplitHandle.pressed ? Theme.accent : Theme.hairline
            }
            HoverHandler {
                cursorShape: Qt.SplitHCursor
            }
        }
        onResizingChanged: if (!resizing)
            library.rememberPlayerWidth(pane.width)

        FocusScope {
            T.SplitView.minimumWidth: 360
            T.SplitView.fillWidth: true
            focus: true

            LibraryHeader {
                id: header
                anchors.left: parent.left
                anchors.right: parent.right
                anchors.top: parent.top
                anchors.margins: 24
                anchors.topMargin: 32
                screen: library
            }
            LibraryGrid {
                id: grid
                anchors.left: parent.left
                anchors.leftMargin: 20
                anchors.right: parent.right
                anchors.rightMargin: 20
                anchors.top: header.bottom
                anchors.topMargin: 20
                anchors.bottom: parent.bottom
                visible: !library.empty
                focus: true
                screen: library
            }
            LibraryEmptyNote {
                anchors.centerIn: parent
                width: Math.min(parent.width - 48, 380)
                visible: library.empty
            }
        }
        LibraryPlayerPane {
            id: pane
            T.SplitView.minimumWidth: 320
            T.SplitView.preferredWidth: library.playerWidth > 0 ? library.playerWidth : Math.max(320, Math.min(420, root.width * 0.36))
            screen: library
        }
    }
}
