// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import Veltro.Downloads
import Veltro.Samples

/// The end of a long queue: processing, waiting, done, failed and cancelled.
Queue {
    id: root

    downloads: samples.downloads
    Component.onCompleted: Qt.callLater(() => root.showEnd()) // qmllint disable

    SampleDownloads {
        id: samples
        size: 10000
    }
}
