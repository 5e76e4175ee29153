// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import Veltro.App
import Veltro.SampleProgram
import Veltro.Types

/// The queue in the main window, with a download in each state.
MainWindow {
    store: program.store
    home: program.home
    memory: program.memory
    updates: program.updates
    Component.onCompleted: {
        program.queue(9);
        program.store.selectedTab = Tab.Downloads;
    }

    readonly property SampleProgram sample: SampleProgram {
        id: program
    }
}
