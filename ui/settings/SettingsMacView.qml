// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import Veltro.Settings
import Veltro.Types

/// The settings, in the main window's tab and in a window of their own; both edit one record.
SettingsForm {
    id: root

    required property MacAppStore store

    settings: SettingsModel {
        preferences: root.store.preferences
        onEdited: preferences => root.store.preferences = preferences
    }
    sites: LoggedInSites.jars
    onSiteRemoved: host => LoggedInSites.remove(host)
    onSiteAdditionRequested: addition.open()
    onPageRequested: page => Desktop.openWebPage(page)

    AddSiteSheet {
        id: addition
        site: LoggedInSites.addition
    }
}
