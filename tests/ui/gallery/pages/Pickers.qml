// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import Veltro.Design
import Veltro.Picker
import Veltro.Samples

/// The sheet for a format, by what the page has, with titles of every kind.
Rectangle {
    id: root

    required property string scene
    readonly property list<string> scenes: ["PickerMixed", "PickerUnplayable", "PickerFormatless", "PickerPlaylist", "PickerEmptyPlaylist"]
    readonly property int kind: scenes.indexOf(scene) // which are in the order of the pages

    color: Theme.page

    SampleRequest {
        id: sample
        page: root.kind
        title: [1, 2, 4, 3, 8][root.kind]
    }
    Surface {
        anchors.centerIn: parent
        width: 680
        height: 500
        radius: 16
        color: Theme.page
        strokeColor: Theme.hairline
        strokeWidth: 1

        FormatPickerContent {
            anchors.fill: parent
            picker: FormatPicker {
                request: sample.request
                Component.onCompleted: if (root.scene === "PickerMixed")
                    section = FormatPicker.All
            }
        }
    }
}
