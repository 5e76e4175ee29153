// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import Veltro.Design
import Veltro.Picker
import Veltro.Types

/// The sheet for the format of a probed page; it is up while the coordinator has a request.
/// Closing it without a choice leaves the coordinator with none.
Sheet {
    id: root

    required property MacAppStore store

    objectName: "formatPicker"
    width: Math.min(680, parent ? parent.width - 40 : 680)
    height: Math.max(380, Math.min(500, parent ? parent.height - 60 : 500))
    accessibleName: qsTr("Choose a format")
    onOpened: content.takeFocus()
    onClosed: root.store.clearPendingFormatPick()
    Component.onCompleted: root.follow()

    function follow() {
        if (root.store.hasPendingFormatPick) {
            picker.request = root.store.pendingFormatPick; // qmllint disable
            root.open();
        } else {
            root.close();
        }
    }

    readonly property Connections storeConnections: Connections {
        function onPendingFormatPickChanged() {
            root.follow();
        }
        target: root.store
    }

    contentItem: FormatPickerContent {
        id: content
        focus: true
        picker: FormatPicker {
            id: picker
            onPicked: (page, format) => {
                root.store.beginFormatPick(page, format);
                root.close();
            }
            onEntriesPicked: addresses => {
                root.store.submitBatch(addresses);
                root.close();
            }
        }
        onCloseRequested: root.close()
    }
}
