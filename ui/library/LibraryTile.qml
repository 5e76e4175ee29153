// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
pragma ComponentBehavior: Bound
import QtQuick
import Veltro.Design
import Veltro.Pictures

/// One saved item: its picture with its length, and what it is called. A press and a drag are told
/// apart here; what they mean is decided elsewhere.
Item {
    id: root

    required property string title
    required property string uploader
    required property url thumbnail
    required property string duration
    required property string spokenName
    required property bool chosen
    /// The keyboard stands here.
    required property bool current
    /// And is to be seen there.
    property bool ringed: root.current
    required property url file
    readonly property bool hasFile: String(root.file) !== ""

    signal clicked(modifiers: int)
    signal menuWanted(x: real, y: real)
    /// The tile is dragged out of the grid; startDrag() is the answer.
    signal dragWanted

    /// @param files what is dragged, as text/uri-list; empty for nothing.
    function startDrag(files: string) {
        root.Drag.mimeData = {
            "text/uri-list": files
        };
        root.Drag.active = files !== "";
    }

    Accessible.role: Accessible.ListItem
    Accessible.name: root.spokenName
    Accessible.selectable: true
    Accessible.selected: root.chosen
    Accessible.focusable: true
    Accessible.focused: root.current
    Accessible.onPressAction: root.clicked(Qt.NoModifier)

    Drag.dragType: Drag.Automatic
    Drag.supportedActions: Qt.CopyAction
    Drag.proposedAction: Qt.CopyAction

    Surface {
        objectName: "outline"
        anchors.fill: parent
        radius: 12
        color: Theme.card
        strokeColor: root.chosen ? Theme.accent : Theme.hairline
        strokeWidth: root.chosen ? 2 : 1
    }
    Surface {
        id: picture
        x: 6
        y: 6
        width: root.width - 12
        height: Math.round((root.width - 12) * 9 / 16)
        radius: 8
        cornerExponent: 2
        color: Theme.sunken

        LineIcon {
            anchors.centerIn: parent
            width: 22
            height: 22
            visible: still.status !== Thumbnail.Ready
            name: "film"
            stroke: 1.8
            color: Theme.inkTertiary
        }
        Thumbnail {
            id: still
            anchors.fill: parent
            source: root.thumbnail
            radius: 8
        }
        Rectangle {
            objectName: "lengthBadge"
            anchors.right: parent.right
            anchors.bottom: parent.bottom
            anchors.margins: 6
            width: badge.implicitWidth + 12
            height: badge.implicitHeight + 6
            visible: root.duration !== ""
            radius: 6
            antialiasing: true
            color: Qt.rgba(0, 0, 0, 0.7)

            Label {
                id: badge
                anchors.centerIn: parent
                text: root.duration
                font.pixelSize: 11
                color: "#FFFFFF"
                Accessible.ignored: true
            }
        }
    }
    Label {
        id: titleLabel
        anchors.top: picture.bottom
        anchors.topMargin: 8
        x: 10
        width: root.width - 20
        text: root.title
        font.pixelSize: 14
        maximumLineCount: 2
        wrapMode: Text.Wrap
        elide: Text.ElideRight
        Accessible.ignored: true
    }
    Label {
        anchors.top: titleLabel.bottom
        anchors.topMargin: 2
        x: 10
        width: root.width - 20
        visible: root.uploader !== ""
        text: root.uploader
        font.pixelSize: 11
        color: Theme.inkTertiary
        maximumLineCount: 1
        elide: Text.ElideRight
        Accessible.ignored: true
    }
    FocusRing {
        shown: root.ringed
        radius: 15
    }
    MouseArea {
        property point pressedAt

        anchors.fill: parent
        acceptedButtons: Qt.LeftButton | Qt.RightButton
        preventStealing: true
        onPressed: mouse => {
            pressedAt = Qt.point(mouse.x, mouse.y);
            if (mouse.button === Qt.RightButton)
                root.menuWanted(mouse.x, mouse.y);
            else if (root.hasFile)
                picture.grabToImage(result => root.Drag.imageSource = result.url);
        }
        onPositionChanged: mouse => {
            const far = Math.hypot(mouse.x - pressedAt.x, mouse.y - pressedAt.y) >= 6;
            if (far && (mouse.buttons & Qt.LeftButton) && root.hasFile && !root.Drag.active) {
                root.dragWanted();
            }
        }
        onReleased: root.Drag.active = false
        onCanceled: root.Drag.active = false
        onClicked: mouse => {
            if (mouse.button === Qt.LeftButton)
                root.clicked(mouse.modifiers);
        }
    }
}
