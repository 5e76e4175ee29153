// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
pragma ComponentBehavior: Bound
import QtQuick
import QtQuick.Templates as T
import Veltro.Design
import Veltro.Picker

/// The entries of a page that is a list; one or all of them can be saved.
FocusScope {
    id: root

    required property FormatPicker picker

    PickerNotice {
        id: notice
        width: parent.width
        height: list.count > 0 ? implicitHeight : parent.height
        reason: root.picker.emptyReason
        offer: root.picker.offer
        onOfferTaken: root.picker.pickOffer()
    }
    ListView {
        id: list
        objectName: "entries"

        anchors.top: notice.bottom
        anchors.bottom: parent.bottom
        anchors.left: parent.left
        anchors.right: parent.right
        anchors.leftMargin: 4
        anchors.rightMargin: 8
        bottomMargin: 12
        clip: true
        focus: true
        spacing: 8
        reuseItems: true
        boundsBehavior: Flickable.StopAtBounds
        model: root.picker.entries
        Accessible.role: Accessible.List
        Accessible.name: qsTr("Entries")
        T.ScrollBar.vertical: ThinScrollBar {}

        delegate: PickerRow {
            required property int index
            required property string host
            required property string duration

            width: list.width - 12
            focus: ListView.isCurrentItem
            leading: host
            trailing: duration
            onClicked: root.picker.saveEntry(index)
        }
    }
}
