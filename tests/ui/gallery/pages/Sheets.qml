// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import Veltro.App
import Veltro.Batch
import Veltro.Design
import Veltro.Downloads
import Veltro.SampleProgram
import Veltro.Samples

/// What comes up over a window, each alone.
Rectangle {
    id: root

    required property string scene
    readonly property int popups: 1
    readonly property var scenes: ({
        About: () => about.open(),
        BatchFilled: () => batch.open(),
        DesignAlert: () => alert.open(),
        QueueDetails: () => details.openFor(samples.at(6)) // which has failed
    })

    color: Theme.page

    Window.onWindowChanged: if (Window.window)
        Qt.callLater(root.scenes[root.scene]) // qmllint disable

    AboutPanel {
        id: about
    }
    BatchPasteMacView {
        id: batch
        store: program.store
        onOpened: text = "https://video.example/watch?v=1\nhttps://video.example/" + "a-long-address/".repeat(30) + " https://video.example/3\nno link\n".repeat(20)
    }
    Alert {
        id: alert
        title: "Downloads are still active"
        message: "Closing the window stops 2 downloads. What is already on disk stays, and they can be resumed."
        acceptText: "Quit"
        cancelText: "Keep Downloading"
    }
    DownloadDetails {
        id: details
    }
    SampleProgram {
        id: program
    }
    SampleDownloads {
        id: samples
        size: 7
    }
}
