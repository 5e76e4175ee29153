// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import Veltro.Design
import Veltro.Player

/// The player with nothing to play, and with a file that is not there.
Rectangle {
    color: Theme.page

    Column {
        anchors.centerIn: parent
        spacing: 24

        MacVideoPlayer {
            width: 480
            height: 270
            url: ""
        }
        MacVideoPlayer {
            width: 480
            height: 270
            url: "file:///nowhere/clip.mp4"
        }
    }
}
