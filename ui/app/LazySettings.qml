// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
pragma ComponentBehavior: Bound
import QtQuick
import Veltro.App
import Veltro.Types

/// The settings' window, made when it is first shown.
Item {
    id: root

    required property MacAppStore store
    property SettingsWindow settings: null

    function show() {
        if (!root.settings)
            root.settings = factory.createObject(root.Window.window) as SettingsWindow;
        root.settings.show();
    }
    function requestActivate() {
        root.settings.requestActivate();
    }

    Component {
        id: factory

        SettingsWindow {
            store: root.store
        }
    }
}
