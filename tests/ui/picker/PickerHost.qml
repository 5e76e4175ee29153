// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import Veltro.Picker
import Veltro.Types

/// A window's content with the sheet over it.
Item {
    id: root

    required property MacAppStore store
    readonly property bool isOpen: sheet.visible

    FormatPickerMacSheet {
        id: sheet
        store: root.store
    }
}
