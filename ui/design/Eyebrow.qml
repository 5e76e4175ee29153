// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import Veltro.Design

/// The small label above a title.
Label {
    property color tint: Theme.inkTertiary

    color: tint
    font.pixelSize: 11
    font.weight: Font.DemiBold
    font.letterSpacing: 1.2
}
