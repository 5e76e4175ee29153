// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import Veltro.App
import Veltro.Design

/// The panel with the program's version.
Rectangle {
    readonly property int popups: 1

    color: Theme.page

    Window.onWindowChanged: if (Window.window)
        Qt.callLater(() => about.open()) // qmllint disable

    AboutPanel {
        id: about
    }
}
