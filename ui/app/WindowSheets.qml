// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import Veltro.App
import Veltro.Batch
import Veltro.Design
import Veltro.Types

/// What lies over the screens: driven by the coordinator, which hears of each closing. Its components
/// are not bound: Qt 6.4 refuses those to a loader that is a type of its own.
Item {
    id: root

    required property MacAppStore store
    required property UpdateManager updates
    /// Whether there is time to make them.
    required property bool isDue
    /// Whether any of them has the keyboard.
    readonly property bool open: batch.isOpen || picker.open || engineAlert.isOpen || about.isOpen || updateSheet.isOpen || closeQuestion.isOpen
    signal closeConfirmed
    /// The question is gone, whatever the answer was.
    signal closeSettled

    function askBeforeClosing() {
        closeQuestion.open();
    }
    function showAbout() {
        about.open();
    }

    Connections {
        function onShowBatchPasteChanged() {
            if (root.store.showBatchPaste)
                batch.open();
            else
                batch.close();
        }
        function onShowEngineErrorChanged() {
            if (root.store.showEngineError)
                engineAlert.open();
            else
                engineAlert.close();
        }
        target: root.store
    }
    Connections {
        function onIsShownChanged() {
            if (root.updates.isShown)
                updateSheet.open();
        }
        target: root.updates
    }
    // qmllint disable unqualified
    LazySheet {
        id: batch
        isDue: root.isDue
        sourceComponent: BatchPasteMacView {
            objectName: "batchSheet"
            store: root.store
        }
    }
    Loader {
        id: picker

        readonly property Sheet sheet: picker.item as Sheet
        readonly property bool open: picker.sheet !== null && picker.sheet.visible
        readonly property bool wanted: root.store.hasPendingFormatPick

        onWantedChanged: if (picker.wanted && !picker.item)
            picker.setSource(ScreenFiles.file("Picker", "FormatPickerMacSheet"), {
                "store": root.store
            });
    }
    LazySheet {
        id: updateSheet
        isDue: root.isDue
        sourceComponent: UpdateSheet {
            objectName: "updateSheet"
            updates: root.updates
        }
    }
    LazySheet {
        id: about
        isDue: root.isDue
        sourceComponent: AboutPanel {
            objectName: "aboutPanel"
        }
    }
    LazySheet {
        id: engineAlert
        isDue: root.isDue
        sourceComponent: Alert {
            objectName: "engineAlert"
            title: qsTr("Engine error")
            message: root.store.engineError
            onClosed: root.store.showEngineError = false
        }
    }
    LazySheet {
        id: closeQuestion
        isDue: root.isDue
        sourceComponent: Alert {
            objectName: "closeQuestion"
            title: qsTr("Downloads are still active")
            message: qsTr("Closing the window stops them. What is on the disk already stays, and saving the same link again goes on from there.")
            acceptText: qsTr("Stop and Quit")
            cancelText: qsTr("Keep Downloading")
            destructive: true
            onAccepted: root.closeConfirmed()
            onClosed: root.closeSettled()
        }
    }
    // qmllint enable unqualified
}
