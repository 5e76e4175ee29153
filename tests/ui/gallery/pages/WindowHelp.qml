// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import QtQuick.Templates as T
import Veltro.App
import Veltro.SampleProgram

/// The help menu.
MainWindow {
    id: root

    readonly property int popups: 1

    store: program.store
    home: program.home
    memory: program.memory
    updates: program.updates
    onActiveChanged: ((root.menuBar as T.MenuBar).itemAt(2) as T.MenuBarItem).triggered()

    readonly property SampleProgram sample: SampleProgram {
        id: program
    }
}
