// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import QtQuick.Templates as T
import Veltro.Design

/// A menu of the window's menu bar, or of a right click through popup().
T.Menu {
    id: root

    property real widest: 170

    implicitWidth: root.widest + leftPadding + rightPadding
    implicitHeight: contentHeight + topPadding + bottomPadding
    padding: 0
    verticalPadding: 5
    margins: 4
    overlap: 1
    font.family: Theme.family
    font.pixelSize: 13

    // Lines of a menu know their width only by themselves.
    onAboutToShow: {
        let widest = 170;
        for (let line = 0; line < root.count; ++line)
            widest = Math.max(widest, root.itemAt(line).implicitWidth);
        root.widest = Math.ceil(widest);
    }

    // Who opened it by a key sees where the arrow keys go on from.
    onOpened: if (LastInput.isKey() && root.currentIndex < 0)
        root.step(1)

    // Around the ends, and past what cannot be chosen.
    function step(by: int) {
        let line = by < 0 ? Math.max(0, root.currentIndex) : root.currentIndex;
        for (let tried = 0; tried < root.count; ++tried) {
            line = (line + by + root.count) % root.count;
            if (root.itemAt(line).activeFocusOnTab) {
                root.currentIndex = line;
                return;
            }
        }
    }

    delegate: MenuItem {}
    contentItem: ListView {
        implicitHeight: contentHeight
        model: root.contentModel
        currentIndex: root.currentIndex
        interactive: contentHeight > height
        clip: interactive
        keyNavigationEnabled: false
        Keys.onUpPressed: root.step(-1)
        Keys.onDownPressed: root.step(1)
        boundsBehavior: Flickable.StopAtBounds
    }
    background: Surface {
        implicitWidth: 170
        radius: 10
        color: Theme.card
        strokeColor: Theme.hairline
        strokeWidth: 1
        shadowColor: Theme.shadow(0.14)
        shadowBlur: 20
        shadowOffsetY: 6
    }
    enter: Transition {
        NumberAnimation {
            property: "opacity"
            from: 0
            to: 1
            duration: 80
        }
    }
    exit: Transition {
        NumberAnimation {
            property: "opacity"
            to: 0
            duration: 80
        }
    }
}
