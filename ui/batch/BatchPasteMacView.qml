// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import Veltro.Batch
import Veltro.Design
import Veltro.Types

/// Many links at once, each saved in the default format. Begins empty each time it opens.
Sheet {
    id: root

    required property MacAppStore store
    property alias text: links.text

    width: 560
    height: 460
    accessibleName: qsTr("Paste many links")

    onAboutToShow: links.text = ""
    onClosed: root.store.showBatchPaste = false

    contentItem: ButtonScope {
        focus: true

        BatchLinks {
            id: links
        }
        Column {
            x: 24
            y: 22
            spacing: 4

            Eyebrow {
                text: qsTr("Batch")
            }
            Label {
                objectName: "batchTitle"
                text: qsTr("Paste many links")
                font: Theme.titleFont
                Accessible.role: Accessible.Heading
            }
        }
        IconButton {
            objectName: "batchClose"
            anchors.right: parent.right
            anchors.rightMargin: 24
            y: 24
            width: 36
            height: 36
            name: "close"
            text: qsTr("Close")
            tint: Theme.ink
            ground: Theme.card
            outlined: true
            onClicked: root.close()
        }
        BatchEditor {
            id: editor
            x: 24
            y: 88
            width: parent.width - 48
            height: parent.height - y - footer.height - 44
            text: links.text
            onEdited: text => links.text = text
        }
        BatchFooter {
            id: footer
            x: 24
            y: parent.height - height - 22
            width: parent.width - 48
            count: links.count
            countText: links.countText
            onPasteRequested: Desktop.readPasteboard(text => links.text = text)
            onQueueRequested: {
                root.store.submitBatch(links.text);
                root.close();
            }
        }
    }
}
