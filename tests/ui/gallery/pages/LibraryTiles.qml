// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
pragma ComponentBehavior: Bound
import QtQuick
import Veltro.Design
import Veltro.Library

/// Tiles: plain, chosen, where the keyboard stands, and with texts of every kind.
Rectangle {
    color: Theme.page

    Grid {
        anchors.centerIn: parent
        columns: 4
        spacing: 12

        Repeater {
            model: [["A short title", "Somebody", "3:07", false, false], ["Chosen", "Somebody", "59:59", true, false], ["The keyboard stands here", "", "", false, true], ["Chosen, and the keyboard stands here", "Somebody", "1:02:05", true, true], ["A title that goes on and on until there is no room left for any of it in two lines of a tile", "An uploader whose name is as long as the title of what was uploaded", "12:34:56", false, false], ["שלום עולם, זה הסרטון החדש", "ערוץ", "0:04", false, false], ["🎬 Emoji 🎉 and <b>markup</b>", "<i>nobody</i>", "0:59", false, false], ["WWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWW", "", "0:01", true, false]]

            LibraryTile {
                required property var modelData

                width: 190
                height: 176
                title: modelData[0]
                uploader: modelData[1]
                duration: modelData[2]
                chosen: modelData[3]
                current: modelData[4]
                spokenName: title
                thumbnail: ""
                file: ""
            }
        }
    }
}
