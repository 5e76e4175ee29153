// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import Veltro.Downloads
import Veltro.Samples

/// The queue: empty, with downloads in every state, and the end of a long one.
Queue {
    id: root

    required property string scene
    readonly property var sizes: ({
        QueueEmpty: 0,
        QueueFull: 9,
        QueueEnd: 10000
    })

    downloads: samples.downloads
    Component.onCompleted: if (scene === "QueueEnd")
        Qt.callLater(() => root.showEnd()) // qmllint disable

    SampleDownloads {
        id: samples
        size: root.sizes[root.scene]
    }
}
