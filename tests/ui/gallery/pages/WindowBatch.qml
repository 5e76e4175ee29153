// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import Veltro.App
import Veltro.SampleProgram

/// The sheet for many links.
MainWindow {
    readonly property int popups: 1

    store: program.store
    home: program.home
    memory: program.memory
    updates: program.updates
    Component.onCompleted: {
        program.store.showBatchPaste = true;
    }

    readonly property SampleProgram sample: SampleProgram {
        id: program
    }
}
