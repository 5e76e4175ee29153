// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import QtQuick.Templates as T

/// Where Return and Enter press the button that has the focus, as Space does.
FocusScope {
    id: root

    Keys.onReturnPressed: event => root.press(event)
    Keys.onEnterPressed: event => root.press(event)

    function press(event: KeyEvent) {
        const button = root.Window.activeFocusItem as T.AbstractButton;
        event.accepted = button !== null;
        if (button && button.enabled)
            button.clicked();
    }
}
