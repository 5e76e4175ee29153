// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import Veltro.Design

/// A sheet that is made in spare time once that is due, or when it is opened before.
Loader {
    id: root

    required property bool isDue
    readonly property Sheet sheet: root.item as Sheet
    readonly property bool isOpen: root.sheet !== null && root.sheet.visible

    function open() {
        root.asynchronous = false;
        root.active = true;
        root.sheet.open();
    }
    function close() {
        if (root.sheet)
            root.sheet.close();
    }

    active: false
    asynchronous: true
    onIsDueChanged: if (root.isDue)
        root.active = true
}
