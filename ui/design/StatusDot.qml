// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import Veltro.Design

/// A coloured dot; the text beside it says what it means.
Surface {
    implicitWidth: 8
    implicitHeight: 8
    radius: 4
    cornerExponent: 2
    color: Theme.neutral
}
