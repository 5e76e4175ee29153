// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import Veltro.Design

/// A fact: a label and its value.
SettingsRow {
    id: root

    required property string value

    implicitHeight: 40
    Accessible.role: Accessible.StaticText
    Accessible.focusable: root.activeFocusOnTab
    Accessible.name: qsTr("%1: %2").arg(root.text).arg(root.value)

    Label {
        text: root.value
        color: Theme.inkSecondary
        Accessible.ignored: true
    }
}
