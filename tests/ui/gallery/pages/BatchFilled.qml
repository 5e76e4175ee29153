// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import Veltro.Batch
import Veltro.Design
import Veltro.SampleProgram

/// The sheet for many links, with some in it.
Rectangle {
    readonly property int popups: 1

    color: Theme.page

    Window.onWindowChanged: if (Window.window)
        Qt.callLater(() => batch.open()) // qmllint disable

    SampleProgram {
        id: program
    }
    BatchPasteMacView {
        id: batch
        store: program.store
        onOpened: text = "https://video.example/watch?v=1\nhttps://video.example/" + "a-long-address/".repeat(30) + " https://video.example/3\nno link\n".repeat(20)
    }
}
