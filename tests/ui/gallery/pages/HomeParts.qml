// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import Veltro.Design
import Veltro.Home

/// The save button from an empty field to a download that has begun, and copied links.
Rectangle {
    color: Theme.page

    Row {
        anchors.horizontalCenter: parent.horizontalCenter
        y: 320
        spacing: 24

        SaveButton {
            objectName: "saveNothing"
        }
        SaveButton {
            objectName: "saveFilled"
            filled: true
        }
        SaveButton {
            objectName: "saveWorking"
            filled: true
            working: true
            verb: "Rummaging…"
        }
        SaveButton {
            objectName: "saveConfirmed"
            filled: true
            confirmed: true
        }
    }
    MacPastePill {
        objectName: "pill"
        x: 40
        offered: true
        linkText: "video.example"
    }
    MacPastePill {
        anchors.right: parent.right
        anchors.rightMargin: 40
        offered: true
        linkText: "a-host-with-a-name-that-is-much-too-long-for-a-pill.media.archive.example"
    }
}
