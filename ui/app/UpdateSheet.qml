// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import Veltro.App
import Veltro.Design
import Veltro.Types

/// What a check for updates found: notes, and install, later or skip.
Sheet {
    id: root

    required property UpdateManager updates

    width: 440
    height: notice.implicitHeight + 48
    accessibleName: qsTr("Updates")
    onClosed: root.updates.later()
    onOpened: notice.takeFocus()

    readonly property Connections follow: Connections {
        function onIsShownChanged() {
            if (root.updates.isShown)
                root.open();
            else
                root.close();
        }
        target: root.updates
    }

    contentItem: ButtonScope {
        focus: true

        UpdateNotice {
            id: notice
            x: 24
            y: 24
            width: parent.width - 48
            title: notice.offers ? qsTr("Veltro %1 is available").arg(root.updates.version) : qsTr("Updates")
            message: root.updates.message
            notes: root.updates.notes
            progress: root.updates.progress
            offers: root.updates.state === UpdateState.Available
            canInstall: root.updates.canInstall
            downloads: root.updates.state === UpdateState.Downloading
            isReady: root.updates.state === UpdateState.Ready
            onSkipRequested: root.updates.skip()
            onLaterRequested: root.close()
            onInstallRequested: root.updates.install()
            onRestartRequested: root.updates.relaunch()
        }
    }
}
