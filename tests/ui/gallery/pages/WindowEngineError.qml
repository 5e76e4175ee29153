// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import Veltro.App
import Veltro.SampleProgram

/// What is said when the engine cannot begin.
MainWindow {
    readonly property int popups: 1

    store: program.store
    home: program.home
    memory: program.memory
    updates: program.updates
    Component.onCompleted: {
        program.failWith("The engine could not be started: " + "the interpreter was not found. ".repeat(60));
    }

    readonly property SampleProgram sample: SampleProgram {
        id: program
    }
}
