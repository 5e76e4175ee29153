// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import QtQuick.Templates as T
import Veltro.Design

/// A card over the dimmed window that has the keyboard until it is closed. Escape closes it.
/// Set width and height where it is used.
T.Dialog {
    id: root

    property string accessibleName

    parent: T.Overlay.overlay
    x: parent ? Math.round((parent.width - width) / 2) : 0
    y: parent ? Math.round((parent.height - height) / 2) : 0
    modal: true
    focus: true
    padding: 0
    closePolicy: T.Popup.CloseOnEscape
    title: root.accessibleName // which its accessible object is called by
    onOpened: root.keepFocus()
    onActiveFocusChanged: if (root.opened && !root.activeFocus)
        Qt.callLater(root.keepFocus) // qmllint disable

    // A tab that opens beneath it asks for the keyboard; only what lies over it may have that.
    function keepFocus() {
        const window = root.parent ? root.parent.Window : null;
        for (let item = window ? window.activeFocusItem : root.parent; item; item = item.parent) {
            if (item === root.parent)
                return;
        }
        if (root.opened && window.active)
            root.forceActiveFocus();
    }

    T.Overlay.modal: Dim {}
    background: Surface {
        objectName: "sheet"
        radius: 16
        color: Theme.page
        strokeColor: Theme.hairline
        strokeWidth: 1
        shadowColor: Theme.shadow(0.22)
        shadowBlur: 44
        shadowOffsetY: 16
    }
    enter: Transition {
        NumberAnimation {
            property: "opacity"
            from: 0
            to: 1
            duration: 160
            easing.type: Easing.OutCubic
        }
        NumberAnimation {
            property: "scale"
            from: 0.97
            to: 1
            duration: 200
            easing.type: Easing.OutCubic
        }
    }
    exit: Transition {
        NumberAnimation {
            property: "opacity"
            to: 0
            duration: 120
        }
    }
}
