// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
pragma ComponentBehavior: Bound
import QtQuick
import QtQuick.Templates as T
import Veltro.Design
import Veltro.Downloads
import Veltro.Settings

/// A menu bar with a menu open, a card that scrolls, a box with its choices, and a short help.
Rectangle {
    readonly property int popups: 3

    color: Theme.page

    Window.onWindowChanged: if (Window.window)
        Qt.callLater(() => { // qmllint disable
            file.popup(12, 34); // qmllint disable
            box.popup.open(); // qmllint disable
        })

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
    ChoiceBox {
        id: box
        x: 40
        y: 320
        width: 280
        name: "Where its cookies are"
        choice: 1
        model: ["Firefox, Personal", "Chromium, A profile with a name that is longer than its box", "פיירפוקס, פרופיל אישי", "🐋 Deep", "A cookies.txt file…"]
    }
    IconButton {
        x: 400
        y: 360
        name: "play.fill"
        text: "Play"

        HoverHelp {
            text: "Play"
            shown: true
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
