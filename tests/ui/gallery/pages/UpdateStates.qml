// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import Veltro.App
import Veltro.Design

/// The window of updates: one on offer, one that is fetched, one that is ready, and none.
Rectangle {
    color: Theme.page

    component Card: Surface {
        default property alias content: holder.data

        width: 440
        height: holder.childrenRect.height + 48
        radius: 16
        color: Theme.page
        strokeColor: Theme.hairline
        strokeWidth: 1

        Item {
            id: holder
            x: 24
            y: 24
            width: 392
        }
    }

    Grid {
        anchors.centerIn: parent
        columns: 2
        spacing: 24

        Card {
            UpdateNotice {
                width: 392
                title: "Veltro 2.0 is available"
                message: "You have 1.0."
                notes: "Faster starts.\n".repeat(20)
                offers: true
                canInstall: true
            }
        }
        Card {
            UpdateNotice {
                width: 392
                title: "Updates"
                message: "Downloading Veltro 2.0…"
                downloads: true
                progress: 0.4
            }
        }
        Card {
            UpdateNotice {
                width: 392
                title: "Updates"
                message: "Veltro 2.0 is ready. It is put in place when you quit."
                isReady: true
            }
        }
        Card {
            UpdateNotice {
                width: 392
                title: "Updates"
                message: "Veltro 1.0 is the newest version."
            }
        }
    }
}
