// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import Veltro.App
import Veltro.SampleProgram

/// The settings in their own window.
SettingsWindow {
    store: program.store

    readonly property SampleProgram sample: SampleProgram {
        id: program
    }
}
