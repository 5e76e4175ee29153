// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import Veltro.App
import Veltro.SampleProgram
import Veltro.Samples
import Veltro.Types

/// The main window, and what lies over it.
MainWindow {
    id: root

    required property string scene
    readonly property list<string> scenesUnderOne: ["WindowBatch", "WindowEngineError", "WindowPicker", "WindowUpdates"]
    readonly property int popups: scenesUnderOne.indexOf(scene) < 0 ? 0 : 1
    readonly property var scenes: ({
        WindowHome: () => root.store.selectedTab = Tab.Home,
        // with a typed address, a copied link, what was saved last, and downloads under way
        WindowHomeFull: () => {
            program.showRecents();
            program.queue(9);
            root.home.urlText = "https://video.example/watch?v=" + "a-long-address-".repeat(40);
            program.copy("https://video.example/watch?v=1");
        },
        WindowQueueEmpty: () => root.store.selectedTab = Tab.Downloads,
        // a download in each state
        WindowQueue: () => {
            program.queue(9);
            root.store.selectedTab = Tab.Downloads;
        },
        WindowLibrary: () => root.store.selectedTab = Tab.Library,
        WindowSettings: () => root.store.selectedTab = Tab.Settings,
        // of two downloads, with a title that is too long
        WindowToasts: () => {
            root.store.selectedTab = Tab.Downloads;
            program.toast("A walk along the harbour", "w".repeat(10000));
        },
        WindowPicker: () => {
            program.queue(4);
            root.store.selectedTab = Tab.Downloads;
            program.ask(request.request);
        },
        WindowBatch: () => root.store.showBatchPaste = true,
        WindowEngineError: () => program.failWith("The engine could not be started: " + "the interpreter was not found. ".repeat(60)),
        // where nothing keeps the program up to date
        WindowUpdates: () => root.updates.checkForUpdates()
    })

    store: program.store
    home: program.home
    memory: program.memory
    updates: program.updates
    Component.onCompleted: scenes[scene]()

    readonly property SampleProgram sample: SampleProgram {
        id: program
    }
    SampleRequest {
        id: request
        title: 8
    }
}
