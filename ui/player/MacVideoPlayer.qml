// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
pragma ComponentBehavior: Bound
import QtQuick
import Veltro.Design
import Veltro.Player

/// Plays a file in place, with its controls over the picture. Full screen takes the whole window,
/// which becomes as large as the screen, and Escape gives it back.
FocusScope {
    id: root

    /// The file to play, at once.
    required property url url
    property real volume: 1
    property bool muted: false
    readonly property alias player: player
    readonly property alias fullScreen: stage.fullScreen
    readonly property bool failed: player.status === VideoPlayer.Failed

    /// To be remembered.
    signal volumeChosen(volume: real, muted: bool)

    function toggleFullScreen() {
        stage.setFullScreen(!stage.fullScreen);
    }

    implicitWidth: 320
    implicitHeight: 180
    Accessible.role: Accessible.Grouping
    Accessible.name: qsTr("Player")
    Component.onDestruction: stage.setFullScreen(false)

    // No scope of its own: a click has to give the keyboard to the picture, not back to the control
    // that had it last.
    Item {
        id: stage

        property bool fullScreen: false
        property bool clicked: false
        // The desktop may take it back by itself.
        readonly property bool windowFillsScreen: root.Window.visibility === Window.FullScreen

        function setFullScreen(wanted: bool) {
            if (wanted === stage.fullScreen)
                return;
            player.fillScreen(wanted);
            stage.fullScreen = wanted;
            stage.forceActiveFocus();
        }
        function changeVolume(by: real) {
            root.volumeChosen(Math.max(0, Math.min(1, player.volume + by)), false);
        }

        parent: stage.fullScreen ? root.Window.window.contentItem : root
        anchors.fill: parent
        z: stage.fullScreen ? 1000 : 0
        focus: true
        activeFocusOnTab: true
        Accessible.role: Accessible.Animation
        Accessible.name: qsTr("Video")
        Accessible.focusable: true
        Accessible.onPressAction: player.togglePlaying()
        onWindowFillsScreenChanged: if (!stage.windowFillsScreen)
            stage.setFullScreen(false)

        onActiveFocusChanged: stage.clicked = stage.clicked && stage.activeFocus
        Keys.onSpacePressed: player.togglePlaying()
        Keys.onEscapePressed: event => {
            event.accepted = stage.fullScreen;
            stage.setFullScreen(false);
        }
        Keys.onLeftPressed: player.seekBy(-5)
        Keys.onRightPressed: player.seekBy(5)
        Keys.onUpPressed: stage.changeVolume(0.05)
        Keys.onDownPressed: stage.changeVolume(-0.05)

        Rectangle {
            anchors.fill: parent
            color: "#000000"
        }
        VideoPlayer {
            id: player
            anchors.fill: parent
            url: root.url
            volume: root.volume
            muted: root.muted
            visible: status !== VideoPlayer.Failed
        }
        // sound without a picture
        Symbol {
            anchors.centerIn: parent
            visible: player.status === VideoPlayer.Ready && player.videoSize.width === 0
            name: "waveform"
            size: 40
            color: Theme.inkTertiary
        }
        Spinner {
            anchors.centerIn: parent
            visible: player.status === VideoPlayer.Loading
        }
        Column {
            anchors.centerIn: parent
            width: parent.width - 32
            spacing: Theme.gap
            visible: root.failed

            Symbol {
                anchors.horizontalCenter: parent.horizontalCenter
                name: "exclamationmark.triangle.fill"
                size: 24
                color: Theme.warning
            }
            Label {
                width: parent.width
                horizontalAlignment: Text.AlignHCenter
                wrapMode: Text.Wrap
                text: player.errorText
                color: Theme.accentText
                Accessible.role: Accessible.AlertMessage
            }
        }
        MouseArea {
            id: pointer

            // Still for long enough that nobody wants the controls.
            property bool still: false
            property bool wasPaused: false

            anchors.fill: parent
            hoverEnabled: true
            cursorShape: stage.fullScreen && controls.hidden ? Qt.BlankCursor : Qt.ArrowCursor
            onPositionChanged: {
                pointer.still = false;
                stillness.restart();
            }
            onClicked: {
                stage.clicked = true;
                stage.forceActiveFocus();
                pointer.wasPaused = player.paused;
                player.togglePlaying();
            }
            // Its first click was one, too, and is taken back.
            onDoubleClicked: {
                if (pointer.wasPaused)
                    player.pause();
                else
                    player.play();
                root.toggleFullScreen();
            }

            Timer {
                id: stillness
                interval: 2500
                onTriggered: pointer.still = true
            }
        }
        PlayerControls {
            id: controls

            readonly property bool hovered: pointer.containsMouse || onControls.hovered
            readonly property bool hidden: !busy && !player.paused && !onControls.hovered && (pointer.still || !hovered)

            anchors.left: parent.left
            anchors.right: parent.right
            anchors.bottom: parent.bottom
            anchors.margins: 10
            visible: player.status === VideoPlayer.Ready
            opacity: controls.hidden ? 0 : 1
            player: player
            fullScreen: stage.fullScreen
            onFullScreenToggled: root.toggleFullScreen()
            onVolumeChosen: (volume, muted) => root.volumeChosen(volume, muted)

            Behavior on opacity {
                NumberAnimation {
                    duration: 160
                }
            }
            HoverHandler {
                id: onControls
            }
        }
        FocusRing {
            shown: stage.activeFocus && !stage.clicked && !stage.fullScreen
            inset: 0
        }
    }
}
