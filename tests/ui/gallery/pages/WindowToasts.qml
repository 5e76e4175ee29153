// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import Veltro.App
import Veltro.SampleProgram
import Veltro.Types

/// The banners of two downloads over a screen, with a title that is too long.
MainWindow {
    store: program.store
    home: program.home
    memory: program.memory
    updates: program.updates
    Component.onCompleted: {
        program.store.selectedTab = Tab.Downloads;
        program.toast("A walk along the harbour", "w".repeat(10000));
    }

    readonly property SampleProgram sample: SampleProgram {
        id: program
    }
}
