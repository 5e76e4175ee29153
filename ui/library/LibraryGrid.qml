// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
pragma ComponentBehavior: Bound
import QtQuick
import QtQuick.Templates as T
import Veltro.Design
import Veltro.Library

/// The saved items as tiles. Only those in view exist, so that there may be any number of them; the
/// rubber band works on where the others would be.
FocusScope {
    id: root

    required property LibraryScreen screen
    readonly property LibrarySelection selection: root.screen.selection
    /// Where the keyboard stands; at first on the first tile, which nothing has chosen yet.
    readonly property int currentRow: Math.max(0, root.selection.currentRow)
    /// No key has led here: the outline says what is chosen, and no ring is wanted around it.
    property bool chosenByPointer: false

    function showCurrent() {
        view.forceLayout(); // rows that have just come have no place yet
        if (root.selection.currentRow >= 0)
            view.positionViewAtIndex(root.selection.currentRow, GridView.Contain);
    }
    function move(event: var, rows: int) {
        root.chosenByPointer = false;
        root.selection.move(rows, event.modifiers);
        root.showCurrent();
        event.accepted = true;
    }
    function openMenu(tile: LibraryTile, itemId: var, file: url, x: real, y: real) {
        menu.itemId = itemId;
        menu.file = file;
        menu.popup(tile, x, y);
    }

    function openMenuAtCurrent() {
        const cell = view.itemAtIndex(root.currentRow);
        if (cell)
            cell.openMenu(16, 16); // qmllint disable
    }

    GridView {
        id: view

        readonly property int linesInView: Math.max(1, Math.floor(view.height / view.cellHeight))

        anchors.fill: parent
        // The last column's spacing lies outside of the column.
        anchors.rightMargin: -12
        focus: true
        activeFocusOnTab: true
        onActiveFocusChanged: root.chosenByPointer = view.activeFocus && !LastInput.isKey()
        clip: true
        cacheBuffer: 400
        topMargin: 4
        bottomMargin: 24
        leftMargin: 4
        boundsBehavior: Flickable.StopAtBounds
        keyNavigationEnabled: false
        cellWidth: root.screen.tile.width + 12
        cellHeight: root.screen.tile.height + 12
        model: root.screen.items
        onWidthChanged: root.screen.layOut(view.width - 12 - view.leftMargin - 4, 62)
        Component.onCompleted: root.screen.layOut(view.width - 12 - view.leftMargin - 4, 62)
        Accessible.role: Accessible.List
        Accessible.name: qsTr("Saved items")

        Keys.onLeftPressed: event => root.move(event, -1)
        Keys.onRightPressed: event => root.move(event, 1)
        Keys.onUpPressed: event => root.move(event, -root.screen.columns)
        Keys.onDownPressed: event => root.move(event, root.screen.columns)
        Keys.onPressed: event => {
            switch (event.key) {
            case Qt.Key_Home:
                root.move(event, -view.count);
                break;
            case Qt.Key_End:
                root.move(event, view.count);
                break;
            case Qt.Key_PageUp:
                root.move(event, -root.screen.columns * view.linesInView);
                break;
            case Qt.Key_PageDown:
                root.move(event, root.screen.columns * view.linesInView);
                break;
            case Qt.Key_Menu:
                event.accepted = true;
                root.openMenuAtCurrent();
                break;
            case Qt.Key_F10:
                event.accepted = event.modifiers & Qt.ShiftModifier;
                if (event.accepted)
                    root.openMenuAtCurrent();
                break;
            }
        }

        T.ScrollBar.vertical: ThinScrollBar {
            z: 3
        }

        delegate: Item {
            id: cell

            required property int index
            required property var itemId
            required property string title
            required property string uploader
            required property url thumbnailFileUrl
            required property url localFileUrl
            required property var durationSeconds

            function openMenu(x: real, y: real) {
                root.openMenu(tile, cell.itemId, cell.localFileUrl, x, y);
            }

            width: view.cellWidth
            height: view.cellHeight

            LibraryTile {
                id: tile
                width: root.screen.tile.width
                height: root.screen.tile.height
                title: cell.title
                uploader: cell.uploader
                thumbnail: cell.thumbnailFileUrl
                duration: root.screen.durationText(cell.durationSeconds)
                spokenName: root.screen.spokenTile(cell.title, cell.uploader, cell.durationSeconds)
                chosen: root.selection.revision >= 0 && root.selection.contains(cell.itemId)
                current: view.activeFocus && root.currentRow === cell.index
                ringed: current && !root.chosenByPointer
                file: cell.localFileUrl
                onClicked: modifiers => {
                    view.forceActiveFocus(Qt.MouseFocusReason);
                    root.chosenByPointer = true;
                    root.selection.click(cell.itemId, modifiers);
                }
                // A screen reader takes the keyboard to one tile; the grid is what keeps it.
                onActiveFocusChanged: if (tile.activeFocus) {
                    view.forceActiveFocus(Qt.OtherFocusReason);
                    root.chosenByPointer = false;
                    root.selection.standAt(cell.itemId);
                }
                onMenuWanted: (x, y) => cell.openMenu(x, y)
                onDragWanted: tile.startDrag(root.screen.draggedFiles(cell.itemId))
            }
        }

        // The ground between the tiles, where a rubber band begins.
        MouseArea {
            id: ground

            property point pressedAt
            property point pointer // in the view, which moves under it
            property real speed: 0

            // From a point of the view to one of the grid, whose first line the view may put anywhere.
            function inGrid(where: point): point {
                return Qt.point(where.x + view.contentX, where.y + view.contentY - view.originY);
            }
            function pull() {
                root.selection.moveMarquee(ground.inGrid(ground.pointer));
                const below = ground.pointer.y - (view.height - 24);
                const above = ground.pointer.y - 24;
                ground.speed = below > 0 ? below : above < 0 ? above : 0;
            }

            parent: view.contentItem
            z: -1
            x: -view.leftMargin
            y: view.originY - view.topMargin
            width: view.width
            height: Math.max(view.contentHeight, view.height) + view.topMargin + view.bottomMargin
            preventStealing: true
            onPressed: mouse => {
                view.forceActiveFocus(Qt.MouseFocusReason);
                root.chosenByPointer = true;
                ground.pressedAt = ground.mapToItem(view, mouse.x, mouse.y);
            }
            onPositionChanged: mouse => {
                ground.pointer = ground.mapToItem(view, mouse.x, mouse.y);
                const far = Math.hypot(ground.pointer.x - ground.pressedAt.x, ground.pointer.y - ground.pressedAt.y) >= 6;
                if (!root.selection.dragging && far)
                    root.selection.beginMarquee(ground.inGrid(ground.pressedAt), mouse.modifiers);
                if (root.selection.dragging)
                    ground.pull();
            }
            onReleased: root.selection.endMarquee()
            onCanceled: root.selection.endMarquee()
        }
        // Near an edge the grid goes on by itself, as long as the band is held there.
        Timer {
            running: root.selection.dragging && ground.speed !== 0
            repeat: true
            interval: 16
            onTriggered: {
                const highest = view.originY - view.topMargin;
                const lowest = Math.max(highest, view.originY + view.contentHeight - view.height + view.bottomMargin);
                const before = view.contentY;
                view.contentY = Math.max(highest, Math.min(lowest, before + Math.max(-30, Math.min(30, ground.speed))));
                if (view.contentY !== before)
                    ground.pull();
            }
        }
        Rectangle {
            objectName: "marquee"
            parent: view.contentItem
            z: 2
            visible: root.selection.dragging
            x: root.selection.marquee.x
            y: root.selection.marquee.y + view.originY
            width: root.selection.marquee.width
            height: root.selection.marquee.height
            color: Theme.faded(Theme.accent, 0.14)
            border.color: Theme.faded(Theme.accent, 0.75)
            border.width: 1
        }
    }
    LibraryTileMenu {
        id: menu
        screen: root.screen
    }
}
