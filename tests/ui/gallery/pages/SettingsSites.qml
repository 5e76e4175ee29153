// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import Veltro.Samples
import Veltro.Settings

/// The settings with saved sites, in the tab.
SettingsForm {
    sites: SampleSites {}
    settings: SettingsModel {
        preferences: record.preferences
        onEdited: preferences => record.preferences = preferences
    }

    SamplePreferences {
        id: record
    }
}
