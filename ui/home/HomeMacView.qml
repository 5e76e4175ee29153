// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
pragma ComponentBehavior: Bound
import QtQuick
import QtQuick.Templates as T
import Veltro.Design
import Veltro.Home
import Veltro.Types

/// Where a link is typed, pasted or taken from the pasteboard, and saved. Return submits wherever
/// the focus is on this screen.
FocusScope {
    id: root

    required property MacAppStore store
    required property HomeModel home
    readonly property bool shown: store.selectedTab === Tab.Home

    Keys.onReturnPressed: root.home.submit()
    Keys.onEnterPressed: root.home.submit()
    onShownChanged: root.appear()
    Component.onCompleted: root.appear()

    function appear() {
        if (root.shown) {
            root.home.appear();
            linkField.takeFocus();
        }
    }

    Flickable {
        id: scroll
        anchors.fill: parent
        contentHeight: column.height + 2 * Theme.pageMargin
        boundsBehavior: Flickable.StopAtBounds
        T.ScrollBar.vertical: ThinScrollBar {}

        Column {
            id: column
            x: Theme.pageMargin
            y: Theme.pageMargin
            width: Math.min(scroll.width - 2 * Theme.pageMargin, 1080)
            spacing: 16

            HomeHero {
                width: parent.width
                bottomPadding: 12
            }
            LinkField {
                id: linkField
                objectName: "linkCard"
                width: parent.width
                text: root.home.urlText
                onEdited: text => root.home.urlText = text
            }
            Item {
                width: parent.width
                height: saveButton.height

                Row {
                    anchors.verticalCenter: parent.verticalCenter
                    spacing: 10

                    ActionButton {
                        objectName: "pasteAndSave"
                        caption: qsTr("Paste & save")
                        text: caption.replace("&", "&&")
                        iconName: "clipboard"
                        kind: ActionButton.Secondary
                        onClicked: root.home.pasteAndSave()
                    }
                    ActionButton {
                        objectName: "pasteMany"
                        text: qsTr("Paste many")
                        iconName: "link"
                        kind: ActionButton.Ghost
                        onClicked: root.store.showBatchPaste = true
                    }
                }
                SaveButton {
                    id: saveButton
                    objectName: "save"
                    anchors.right: parent.right
                    filled: root.home.urlText !== ""
                    working: root.home.working
                    confirmed: root.home.startedConfirm
                    verb: root.home.workingVerb
                    onClicked: root.home.submit()
                }
            }
            QualityChips {
                labels: root.home.tierLabels
                selected: root.home.selectedTier
                onPicked: tier => root.home.selectedTier = tier
            }
            RecentSaves {
                width: parent.width
                items: root.home.recents
                onOpened: root.store.selectedTab = Tab.Library
            }
            HowItWorks {
                width: parent.width
                topPadding: 12
            }
        }
    }
    MacPastePill {
        anchors.horizontalCenter: parent.horizontalCenter
        offered: root.home.hasCopiedLink
        linkText: root.home.copiedLinkText
        onUsed: root.home.useCopiedLink()
        onDismissed: root.home.dismissCopiedLink()
    }
}
