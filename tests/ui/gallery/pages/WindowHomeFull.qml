// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import Veltro.App
import Veltro.SampleProgram

/// Home with a typed address, a copied link, what was saved last, and downloads under way.
MainWindow {
    store: program.store
    home: program.home
    memory: program.memory
    updates: program.updates
    Component.onCompleted: {
        program.showRecents();
        program.queue(9);
        program.home.urlText = "https://video.example/watch?v=" + "a-long-address-".repeat(40);
        program.copy("https://video.example/watch?v=1");
    }

    readonly property SampleProgram sample: SampleProgram {
        id: program
    }
}
