// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import Veltro.App
import Veltro.SampleProgram
import Veltro.Types

/// The library in the main window.
MainWindow {
    store: program.store
    home: program.home
    memory: program.memory
    updates: program.updates
    Component.onCompleted: {
        program.store.selectedTab = Tab.Library;
    }

    readonly property SampleProgram sample: SampleProgram {
        id: program
    }
}
