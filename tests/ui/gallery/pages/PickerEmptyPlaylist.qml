// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import Veltro.Design
import Veltro.Picker
import Veltro.Samples

/// A list without entries that can be saved.
Rectangle {
    color: Theme.page

    SampleRequest {
        id: sample
        page: SampleRequest.EmptyPlaylist
        title: 8
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
            }
        }
    }
}
