// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import Veltro.Design

/// A question over the window.
Rectangle {
    readonly property int popups: 1

    color: Theme.page

    Window.onWindowChanged: if (Window.window)
        Qt.callLater(() => alert.open()) // qmllint disable

    Alert {
        id: alert
        title: "Downloads are still active"
        message: "Closing the window stops 2 downloads. What is already on disk stays, and they can be resumed."
        acceptText: "Quit"
        cancelText: "Keep Downloading"
    }
}
