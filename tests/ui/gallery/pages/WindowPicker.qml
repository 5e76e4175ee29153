// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import Veltro.App
import Veltro.SampleProgram
import Veltro.Samples
import Veltro.Types

/// The sheet for a format, over the queue.
MainWindow {
    readonly property int popups: 1

    store: program.store
    home: program.home
    memory: program.memory
    updates: program.updates
    Component.onCompleted: {
        program.queue(4);
        program.store.selectedTab = Tab.Downloads;
        program.ask(request.request);
    }

    readonly property SampleProgram sample: SampleProgram {
        id: program
    }
    SampleRequest {
        id: request
        title: 8
    }
}
