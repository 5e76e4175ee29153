// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
pragma ComponentBehavior: Bound
import QtQuick
import Veltro.Design

/// The qualities in a row; the arrow keys move between them.
Row {
    id: root

    required property var labels // a list of texts, which 6.4 has no type for
    required property int selected
    signal picked(int tier)

    spacing: 8
    Accessible.role: Accessible.Grouping
    Accessible.name: qsTr("Quality")

    Repeater {
        model: root.labels
        delegate: QualityChip {
            id: chip

            required property string modelData
            required property int index

            objectName: "chip" + index
            text: chip.modelData
            checked: chip.index === root.selected
            onClicked: root.picked(chip.index)
            Keys.onLeftPressed: chip.nextItemInFocusChain(false).forceActiveFocus(Qt.BacktabFocusReason)
            Keys.onRightPressed: chip.nextItemInFocusChain(true).forceActiveFocus(Qt.TabFocusReason)
        }
    }
}
