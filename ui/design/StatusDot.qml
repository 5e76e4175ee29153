// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import Veltro.Design

/// A coloured dot; the text beside it says what it means.
Rectangle {
    implicitWidth: 8
    implicitHeight: 8
    radius: 4
    antialiasing: true
    color: Theme.neutral
}
