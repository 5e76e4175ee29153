// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import Veltro.Design
import Veltro.Settings

/// Adding a site: before, after cookies were found, and after none were.
Rectangle {
    color: Theme.page

    Row {
        anchors.centerIn: parent
        spacing: 24

        AddSiteForm {
            width: 280
            profiles: ["Firefox, Personal", "Chromium, A profile with a rather long name"]
        }
        AddSiteForm {
            width: 280
            found: ["video.example, 12 cookies", "www.video.example, 1 cookie"]
        }
        AddSiteForm {
            width: 280
            isBusy: true
            error: "Firefox has no cookies for video.example. Sign in to the site there, then try again."
        }
    }
}
