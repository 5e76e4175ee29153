// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import Veltro.App
import Veltro.SampleProgram
import Veltro.Types

/// The main window with nothing in the queue.
MainWindow {
    store: program.store
    home: program.home
    memory: program.memory
    updates: program.updates
    Component.onCompleted: {
        program.store.selectedTab = Tab.Downloads;
    }

    readonly property SampleProgram sample: SampleProgram {
        id: program
    }
}
