// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import Veltro.App
import Veltro.Design

/// The banners: offline, and of downloads with titles of every kind.
Rectangle {
    id: root

    color: Theme.page

    Column {
        anchors.horizontalCenter: parent.horizontalCenter
        y: 12
        spacing: 12

        NetworkBannerMac {
            objectName: "networkBanner"
            anchors.horizontalCenter: parent.horizontalCenter
        }
        StartedDownloadBannerMac {
            objectName: "startedBanner"
            anchors.horizontalCenter: parent.horizontalCenter
            label: "A walk along the harbour"
        }
        CompletedDownloadBannerMac {
            objectName: "completedBanner"
            anchors.horizontalCenter: parent.horizontalCenter
            savedTitle: "A walk along the harbour"
        }
        Repeater {
            model: ["<b>Bold</b> &amp; <img src=\"x.png\">", "נמל בשעת ערב: הליכה ארוכה לאורך המזח", "report\u202Egpj.exe\u202C and more", "w".repeat(10000)]
            delegate: CompletedDownloadBannerMac {
                required property string modelData

                anchors.horizontalCenter: parent.horizontalCenter
                savedTitle: modelData
            }
        }
    }
}
