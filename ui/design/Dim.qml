// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import Veltro.Design

/// What lies between the window and a sheet or an alert.
Rectangle {
    color: Theme.scrim

    Behavior on opacity {
        NumberAnimation {
            duration: Theme.quick
        }
    }
}
