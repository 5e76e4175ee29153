// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import Veltro.Design
import Veltro.Settings

/// How long ago a date was, told anew each minute while it is seen.
Label {
    id: root

    property date date

    text: relative.text

    RelativeDate {
        id: relative
        date: root.date
    }
    Timer {
        interval: 60000
        running: root.visible
        repeat: true
        onTriggered: relative.refresh()
    }
    onVisibleChanged: relative.refresh()
}
