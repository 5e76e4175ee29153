// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import Veltro.Design

/// A line of one pixel, as wide as what holds it.
Rectangle {
    width: parent ? parent.width : 0
    implicitHeight: 1
    height: 1
    color: Theme.hairline
}
