// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import Veltro.Design

/// The hairline above a row of a card; the topmost row, which begins at the card's edge, has none.
HairlineDivider {
    x: 16
    width: parent ? parent.width - 16 : 0
    visible: parent !== null && parent.y > 4
}
