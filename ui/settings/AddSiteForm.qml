// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
pragma ComponentBehavior: Bound
import QtQuick
import Veltro.Design

/// The host, the source of its cookies, what was found or why nothing was, and the buttons.
Column {
    id: root

    /// Strings: profiles of browsers, and what would be saved.
    property var profiles: []
    property var found: []
    property bool isBusy: false
    property string error
    readonly property string host: hostField.text.trim()
    readonly property bool hasFound: root.found.length > 0
    readonly property bool isFile: source.choice === root.profiles.length

    signal browserChosen(profile: int, host: string)
    signal fileWanted
    signal changed
    signal saveRequested
    signal cancelled

    function takeFocus() {
        hostField.forceActiveFocus();
    }
    function advance() {
        if (root.isBusy || root.host === "")
            return;
        if (root.hasFound)
            root.saveRequested();
        else if (root.isFile)
            root.fileWanted();
        else
            root.browserChosen(source.choice, root.host);
    }

    spacing: 12

    Label {
        text: qsTr("Add a logged-in site")
        font.pixelSize: 16
        font.weight: Font.DemiBold
        Accessible.role: Accessible.Heading
    }
    Label {
        width: parent.width
        text: qsTr("Sign in to the site in your browser first. Its cookies are copied for this site alone and stay on this computer.")
        wrapMode: Text.Wrap
        color: Theme.inkSecondary
    }
    TextField {
        id: hostField
        objectName: "host"
        width: parent.width
        placeholderText: qsTr("Site, for example video.example")
        enabled: !root.isBusy
        onTextEdited: root.changed()
        onAccepted: root.advance()
    }
    ChoiceBox {
        id: source
        objectName: "source"
        width: parent.width
        name: qsTr("Where its cookies are")
        enabled: !root.isBusy
        model: [...root.profiles, qsTr("A cookies.txt file…")]
        choice: 0
        onChosen: index => {
            source.choice = index;
            root.changed();
        }
    }
    Label {
        objectName: "error"
        visible: root.error !== ""
        width: parent.width
        text: root.error
        wrapMode: Text.Wrap
        color: Theme.danger
        Accessible.role: Accessible.AlertMessage
    }
    Column {
        visible: root.hasFound
        width: parent.width
        spacing: 4

        Repeater {
            model: root.found
            delegate: Label {
                required property string modelData

                width: root.width
                text: modelData
                elide: Text.ElideMiddle
                font.weight: Font.DemiBold
            }
        }
    }
    Item {
        width: parent.width
        height: buttons.height + 6

        Spinner {
            anchors.verticalCenter: buttons.verticalCenter
            visible: root.isBusy
            width: 16
            height: 16
        }
        Row {
            id: buttons
            anchors.right: parent.right
            anchors.bottom: parent.bottom
            spacing: Theme.gap

            CapsuleButton {
                text: qsTr("Cancel")
                ground: Theme.card
                foreground: Theme.ink
                strokeColor: Theme.hairline
                font.pixelSize: 13
                horizontalPadding: 18
                onClicked: root.cancelled()
            }
            CapsuleButton {
                objectName: "advance"
                text: root.hasFound ? qsTr("Save") : root.isFile ? qsTr("Choose File…") : qsTr("Look for Cookies")
                enabled: !root.isBusy && root.host !== ""
                font.pixelSize: 13
                horizontalPadding: 22
                onClicked: root.advance()
            }
        }
    }
}
