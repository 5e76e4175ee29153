// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import Veltro.Design
import Veltro.Settings
import Veltro.Types

/// The menus. A line shows its keys; WindowKeys is what hears them.
MenuBar {
    id: root

    required property MacAppStore store
    readonly property bool hasSupport: String(information.supportPage) !== ""
    signal settingsRequested
    signal aboutRequested
    signal updatesRequested
    signal quitRequested

    AboutInformation {
        id: information
    }
    Menu {
        title: qsTr("&File")

        MenuItem {
            objectName: "menuPaste"
            text: qsTr("Paste & Save…")
            keys: "Ctrl+Shift+V"
            onTriggered: root.store.beginPaste()
        }
        MenuItem {
            objectName: "menuBatch"
            text: qsTr("Paste Many Links…")
            keys: "Ctrl+Shift+B"
            onTriggered: root.store.showBatchPaste = true
        }
        MenuSeparator {}
        MenuItem {
            objectName: "menuSettings"
            text: qsTr("Settings…")
            onTriggered: root.settingsRequested()
        }
        MenuSeparator {}
        MenuItem {
            text: qsTr("Quit")
            keys: "Ctrl+Q"
            onTriggered: root.quitRequested()
        }
    }
    Menu {
        title: qsTr("&View")

        MenuItem {
            objectName: "menuLibrary"
            text: qsTr("Show Library")
            keys: "Ctrl+2"
            onTriggered: root.store.selectedTab = Tab.Library
        }
        MenuItem {
            text: qsTr("Show Downloads")
            keys: "Ctrl+3"
            onTriggered: root.store.selectedTab = Tab.Downloads
        }
        MenuItem {
            text: qsTr("Show Settings")
            keys: "Ctrl+,"
            onTriggered: root.store.selectedTab = Tab.Settings
        }
    }
    Menu {
        title: qsTr("&Help")

        MenuItem {
            objectName: "menuSupport"
            text: qsTr("Veltro Support")
            visible: root.hasSupport
            height: visible ? implicitHeight : 0
            onTriggered: Desktop.openWebPage(information.supportPage)
        }
        MenuSeparator {
            visible: root.hasSupport
            height: visible ? implicitHeight : 0
        }
        MenuItem {
            text: qsTr("Check for Updates…")
            onTriggered: root.updatesRequested()
        }
        MenuItem {
            objectName: "menuAbout"
            text: qsTr("About Veltro")
            onTriggered: root.aboutRequested()
        }
    }
}
