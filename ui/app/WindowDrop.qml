// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import Veltro.App
import Veltro.Design

/// Takes links that are dropped anywhere on the window, and refuses what holds none.
DropArea {
    id: root

    signal linkDropped(url link)

    onEntered: drag => drag.accepted = root.linkOf(drag) !== ""
    onDropped: drop => {
        const link = root.linkOf(drop);
        drop.accepted = link !== "";
        if (drop.accepted)
            root.linkDropped(link);
    }

    function linkOf(event: DragEvent): string {
        return LinkDrop.firstLink(event.urls, event.hasText ? event.text : "").toString();
    }

    Rectangle {
        anchors.fill: parent
        anchors.margins: 6
        visible: root.containsDrag
        radius: 12
        antialiasing: true
        color: Theme.faded(Theme.accent, 0.06)
        border.color: Theme.accent
        border.width: 2
    }
}
