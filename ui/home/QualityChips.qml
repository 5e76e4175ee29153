// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
pragma ComponentBehavior: Bound
import QtQuick

/// The qualities in a row. Tab stops at the chosen one, and the arrow keys choose another.
Row {
    id: root

    required property var labels // a list of texts, which 6.4 has no type for
    required property int selected
    signal picked(int tier)

    function step(by: int) {
        const chip = chips.itemAt(root.selected + by);
        if (chip) {
            // First, since a chip that has the focus cannot cease to be a stop.
            chip.forceActiveFocus(Qt.TabFocusReason);
            root.picked(root.selected + by);
        }
    }

    spacing: 8
    Accessible.role: Accessible.Grouping
    Accessible.name: qsTr("Quality")

    Repeater {
        id: chips
        model: root.labels
        delegate: QualityChip {
            id: chip

            required property string modelData
            required property int index

            objectName: "chip" + index
            text: chip.modelData
            checked: chip.index === root.selected
            focusPolicy: chip.checked ? Qt.StrongFocus : Qt.ClickFocus
            onClicked: root.picked(chip.index)
            Keys.onLeftPressed: root.step(-1)
            Keys.onRightPressed: root.step(1)
        }
    }
}
