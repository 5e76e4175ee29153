// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import Veltro.Types

/// The queue's tab: every download of this session.
Queue {
    id: root

    required property MacAppStore store

    downloads: root.store.activeDownloads
    onClearRequested: root.store.clearFinished()
    onCancelRequested: record => root.store.cancel(record.id)
    onRetryRequested: record => root.store.beginRetry(record.id)
    onPlayRequested: file => Desktop.open(file)
    onShowRequested: file => Desktop.reveal(file)
    onOpenRequested: page => Desktop.openWebPage(page)
    onCopyRequested: text => Desktop.copy(text)
}
