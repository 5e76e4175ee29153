// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
pragma ComponentBehavior: Bound
import QtQuick
import QtQuick.Dialogs
import Veltro.Design
import Veltro.Settings

/// Adds a logged-in site: which one, where its cookies are, and what of them is saved.
Sheet {
    id: root

    required property SiteImport site

    width: Math.min(480, parent ? parent.width - 40 : 480)
    height: form.implicitHeight + 48
    accessibleName: qsTr("Add a logged-in site")
    onAboutToShow: root.site.begin()
    onOpened: form.takeFocus()
    onClosed: root.site.discard()

    readonly property Connections importConnections: Connections {
        function onSaved() {
            root.close();
        }
        target: root.site
    }

    contentItem: ButtonScope {
        focus: true

        AddSiteForm {
            id: form
            x: 24
            y: 24
            width: parent.width - 48
            profiles: root.site.profiles
            isBusy: root.site.isBusy
            error: root.site.error
            found: root.site.found
            onBrowserChosen: (profile, host) => root.site.readBrowser(profile, host)
            onFileWanted: files.open()
            onChanged: root.site.discard()
            onSaveRequested: root.site.save()
            onCancelled: root.close()
        }
        FileDialog {
            id: files
            title: qsTr("Choose a cookies.txt file")
            nameFilters: [qsTr("Cookie files (*.txt)"), qsTr("All files (*)")]
            onAccepted: root.site.readFile(files.selectedFile, form.host)
        }
    }
}
