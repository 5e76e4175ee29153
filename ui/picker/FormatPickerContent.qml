// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
pragma ComponentBehavior: Bound
import QtQuick
import Veltro.Design
import Veltro.Picker

/// What the picker shows of a page: its head, the lists by kind, and the rows of one of them.
ButtonScope {
    id: root

    required property FormatPicker picker

    signal closeRequested

    function takeFocus() {
        if (root.picker.isPlaylist)
            entries.forceActiveFocus();
        else
            rows.takeFocus();
    }

    implicitHeight: 380

    PickerHeader {
        id: header
        width: parent.width
        title: root.picker.title
        source: root.picker.source
        thumbnail: root.picker.thumbnail
        onCloseRequested: root.closeRequested()
    }
    HairlineDivider {
        id: divider
        anchors.top: header.bottom
    }
    Column {
        id: sections
        objectName: "sections"
        anchors.top: divider.bottom
        width: 180
        padding: 12
        spacing: 4
        Accessible.role: Accessible.PageTabList
        Accessible.name: qsTr("Kinds of formats")

        Repeater {
            model: root.picker.sectionTitles
            delegate: SectionButton {
                required property int index
                required property string modelData

                width: 156
                text: modelData
                count: root.picker.counts[index]
                selected: root.picker.section === index
                onClicked: root.picker.section = index
            }
        }
    }
    Item {
        anchors.left: sections.right
        anchors.right: parent.right
        anchors.top: divider.bottom
        anchors.bottom: parent.bottom
        anchors.bottomMargin: 1 // the sheet's edge

        FormatRows {
            id: rows
            anchors.fill: parent
            visible: !root.picker.isPlaylist
            focus: visible
            picker: root.picker
        }
        PlaylistEntries {
            id: entries
            anchors.fill: parent
            visible: root.picker.isPlaylist
            focus: visible
            picker: root.picker
        }
    }
}
