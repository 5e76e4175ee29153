// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import Veltro.Design
import Veltro.Player

/// The controls that lie over a player's picture.
Rectangle {
    id: root

    required property VideoPlayer player
    required property bool fullScreen
    /// Somebody has the focus in here, or holds a handle.
    readonly property bool busy: positionSlider.pressed || volumeSlider.pressed || playButton.visualFocus || positionSlider.visualFocus || muteButton.visualFocus || volumeSlider.visualFocus || fullScreenButton.visualFocus

    signal fullScreenToggled
    /// A person has chosen this, once for each choice.
    signal volumeChosen(volume: real, muted: bool)

    implicitHeight: 40
    radius: 10
    antialiasing: true
    color: Qt.rgba(0, 0, 0, 0.62)

    IconButton {
        id: playButton
        anchors.left: parent.left
        anchors.leftMargin: 6
        anchors.verticalCenter: parent.verticalCenter
        name: root.player.paused || root.player.atEnd ? "play.fill" : "pause.fill"
        text: root.player.paused || root.player.atEnd ? qsTr("Play") : qsTr("Pause")
        tint: Theme.accentText
        onClicked: root.player.togglePlaying()
    }
    Label {
        id: positionLabel
        anchors.left: playButton.right
        anchors.leftMargin: 4
        anchors.verticalCenter: parent.verticalCenter
        width: Math.max(implicitWidth, 30)
        horizontalAlignment: Text.AlignRight
        text: PlayerTexts.duration(root.player.positionSeconds)
        color: Theme.accentText
        font.pixelSize: 11
        Accessible.ignored: true
    }
    PlayerSlider {
        id: positionSlider
        anchors.left: positionLabel.right
        anchors.leftMargin: 8
        anchors.right: durationLabel.left
        anchors.rightMargin: 8
        anchors.verticalCenter: parent.verticalCenter
        label: qsTr("Position")
        Accessible.description: PlayerTexts.spoken(root.player.positionSeconds)
        enabled: root.player.durationSeconds > 0
        to: Math.max(root.player.durationSeconds, 0.001)
        stepSize: 5
        snapMode: PlayerSlider.NoSnap
        onMoved: root.player.seek(value)

        Binding on value {
            when: !positionSlider.pressed
            value: root.player.positionSeconds
            restoreMode: Binding.RestoreNone
        }
    }
    Label {
        id: durationLabel
        anchors.right: muteButton.left
        anchors.rightMargin: 2
        anchors.verticalCenter: parent.verticalCenter
        text: root.player.durationSeconds > 0 ? PlayerTexts.duration(root.player.durationSeconds) : ""
        color: Theme.accentText
        font.pixelSize: 11
        Accessible.ignored: true
    }
    IconButton {
        id: muteButton
        anchors.right: volumeSlider.left
        anchors.verticalCenter: parent.verticalCenter
        name: root.player.muted || root.player.volume === 0 ? "speaker.slash.fill" : "speaker.wave.2.fill"
        text: root.player.muted ? qsTr("Unmute") : qsTr("Mute")
        tint: Theme.accentText
        onClicked: root.volumeChosen(root.player.volume, !root.player.muted)
    }
    PlayerSlider {
        id: volumeSlider
        anchors.right: fullScreenButton.left
        anchors.rightMargin: 4
        anchors.verticalCenter: parent.verticalCenter
        width: 48
        label: qsTr("Volume")
        to: 1
        stepSize: 0.05
        snapMode: PlayerSlider.NoSnap
        onMoved: {
            root.player.volume = value;
            if (!pressed)
                root.volumeChosen(value, false);
        }
        onPressedChanged: if (!pressed)
            root.volumeChosen(value, false)

        Binding on value {
            when: !volumeSlider.pressed
            value: root.player.volume
            restoreMode: Binding.RestoreNone
        }
    }
    IconButton {
        id: fullScreenButton
        anchors.right: parent.right
        anchors.rightMargin: 6
        anchors.verticalCenter: parent.verticalCenter
        name: root.fullScreen ? "arrow.down.right.and.arrow.up.left" : "arrow.up.left.and.arrow.down.right"
        text: root.fullScreen ? qsTr("Leave Full Screen") : qsTr("Full Screen")
        tint: Theme.accentText
        onClicked: root.fullScreenToggled()
    }
}
