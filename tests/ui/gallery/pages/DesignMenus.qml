// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
pragma ComponentBehavior: Bound
import QtQuick
import QtQuick.Templates as T
import Veltro.Design

/// A menu bar with a menu open, and a card that scrolls.
Rectangle {
    readonly property int popups: 1

    color: Theme.page

    Window.onWindowChanged: if (Window.window)
        Qt.callLater(() => file.popup(12, 34)) // qmllint disable

    MenuBar {
        width: parent.width

        Menu {
            title: "File"
        }
        Menu {
            title: "View"
        }
        Menu {
            title: "Help"
        }
    }
    Menu {
        id: file
        MenuItem {
            text: "Paste & Save…"
            keys: "Ctrl+Shift+V"
        }
        MenuItem {
            text: "Paste Many Links…"
            keys: "Ctrl+Shift+B"
        }
        MenuSeparator {}
        MenuItem {
            text: "Delete"
            destructive: true
        }
        MenuItem {
            text: "Not now"
            enabled: false
        }
    }
    Surface {
        x: 400
        y: 100
        width: 300
        height: 200
        radius: 14
        strokeColor: Theme.hairline
        strokeWidth: 1

        Flickable {
            anchors.fill: parent
            anchors.margins: 12
            contentHeight: 900
            clip: true
            T.ScrollBar.vertical: ThinScrollBar {
                policy: T.ScrollBar.AlwaysOn
            }
            Label {
                text: "A view that scrolls"
            }
        }
    }
}
