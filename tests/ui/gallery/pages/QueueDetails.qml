// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import Veltro.Design
import Veltro.Downloads
import Veltro.Samples

/// What is known of a failed download.
Rectangle {
    readonly property int popups: 1

    color: Theme.page

    Window.onWindowChanged: if (Window.window)
        Qt.callLater(() => details.openFor(samples.at(6))) // qmllint disable

    SampleDownloads {
        id: samples
        size: 7
    }
    DownloadDetails {
        id: details
    }
}
