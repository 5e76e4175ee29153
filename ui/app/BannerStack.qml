// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import Veltro.Types

/// The banners along the top of the screen, and how long they stay. Their components are not bound:
/// Qt 6.4 refuses those to a loader of another file.
Column {
    id: root

    required property MacAppStore store

    topPadding: 12
    spacing: 12

    Connections {
        function onStartedToastChanged() {
            if (root.store.hasStartedToast)
                startedTime.restart();
            else
                startedTime.stop();
        }
        function onCompletedToastChanged() {
            if (root.store.hasCompletedToast)
                completedTime.restart();
            else
                completedTime.stop();
        }
        target: root.store
    }
    Timer {
        id: startedTime
        interval: 2000
        onTriggered: root.store.clearStartedToast()
    }
    Timer {
        id: completedTime
        interval: 5000
        onTriggered: root.store.clearCompletedToast()
    }
    // qmllint disable unqualified
    BannerSlot {
        objectName: "offlineSlot"
        shown: !root.store.network.isOnline
        springs: false
        content: NetworkBannerMac {
            objectName: "networkBanner"
        }
    }
    BannerSlot {
        objectName: "startedSlot"
        shown: root.store.hasStartedToast
        content: StartedDownloadBannerMac {
            objectName: "startedBanner"
            label: root.store.startedToast
            maximumWidth: root.width - 24
            onTapped: {
                root.store.selectedTab = Tab.Downloads;
                root.store.clearStartedToast();
            }
        }
    }
    BannerSlot {
        objectName: "completedSlot"
        shown: root.store.hasCompletedToast
        content: CompletedDownloadBannerMac {
            objectName: "completedBanner"
            savedTitle: root.store.completedToast.title
            maximumWidth: root.width - 24
            onOpened: {
                root.store.selectedTab = Tab.Library;
                root.store.clearCompletedToast();
            }
            onDismissed: root.store.clearCompletedToast()
        }
    }
    // qmllint enable unqualified
}
