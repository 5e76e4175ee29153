// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
pragma ComponentBehavior: Bound
import QtQuick
import QtQuick.Templates as T
import Veltro.Design
import Veltro.Picker

/// The formats of the current list, or why there is none and what can be saved all the same.
FocusScope {
    id: root

    required property FormatPicker picker

    /// The first row has it, or what is offered in place of rows.
    function takeFocus() {
        if (notice.visible && notice.offer !== "")
            notice.takeFocus();
        else
            list.forceActiveFocus();
    }

    ListView {
        id: list
        objectName: "formats"

        anchors.fill: parent
        anchors.leftMargin: 4
        anchors.rightMargin: 8
        topMargin: 12
        bottomMargin: 12
        clip: true
        focus: true
        spacing: 8
        boundsBehavior: Flickable.StopAtBounds
        model: root.picker.rows
        Accessible.role: Accessible.List
        Accessible.name: qsTr("Formats")
        T.ScrollBar.vertical: ThinScrollBar {}

        delegate: PickerRow {
            required property int index
            required property string label
            required property string extension
            required property string size

            width: list.width - 12
            focus: ListView.isCurrentItem
            title: label
            leading: extension
            trailing: size
            onClicked: root.picker.pick(index)
        }
    }
    PickerNotice {
        id: notice
        anchors.fill: parent
        visible: root.picker.emptyReason !== ""
        reason: root.picker.emptyReason
        offer: root.picker.offer
        onOfferTaken: root.picker.pickOffer()
    }
}
