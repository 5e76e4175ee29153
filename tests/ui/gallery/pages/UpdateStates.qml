// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
pragma ComponentBehavior: Bound
import QtQuick
import Veltro.App
import Veltro.Design

/// The window of updates: one on offer, one that is fetched, one that is ready, and none.
Rectangle {
    color: Theme.page

    Grid {
        anchors.centerIn: parent
        columns: 2
        spacing: 24

        Repeater {
            model: ["Veltro 2.0 is available", "Downloading Veltro 2.0…", "Veltro 2.0 is ready. It is put in place when you quit.", "Veltro 1.0 is the newest version."]

            Surface {
                id: card
                required property string modelData
                required property int index

                width: 440
                height: notice.height + 48
                radius: 16
                color: Theme.page
                strokeColor: Theme.hairline
                strokeWidth: 1

                UpdateNotice {
                    id: notice
                    x: 24
                    y: 24
                    width: 392
                    title: offers ? card.modelData : "Updates"
                    message: offers ? "You have 1.0." : card.modelData
                    notes: offers ? "Faster starts.\n".repeat(20) : ""
                    offers: card.index === 0
                    canInstall: offers
                    downloads: card.index === 1
                    progress: downloads ? 0.4 : 0
                    isReady: card.index === 2
                }
            }
        }
    }
}
