// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once
#include "coordination/coordinator.h"
#include "engine/service/yt_dlp_service.h"
#include "library/completion_notifier.h"
#include "library/download_storage.h"
#include "platform/pasteboard.h"
#include "platform/workspace.h"

namespace veltro {

// A desktop before which nobody sits.

class NoWorkspace final : public Workspace {
public:
    bool open(const QUrl &) override { return false; }
    using Workspace::reveal;
    void reveal(const QList<QUrl> &) override {}
    bool openWebPage(const QUrl &) override { return false; }
    void beep() override {}
    void haptic() override {}
};

class NoPasteboard final : public Pasteboard {
public:
    [[nodiscard]] std::optional<QString> text() const override { return std::nullopt; }
    void setText(const QString &) override {}
};

/// The coordinator with all that it needs, and no window. Main thread.
class HeadlessCoordinator {
public:
    [[nodiscard]] MacAppStore &store() { return m_store; }

private:
    YtDlpService m_engine;
    DownloadStorage m_storage;
    NoWorkspace m_workspace;
    NoPasteboard m_pasteboard;
    MacAppStore m_store{{m_engine, m_storage, CompletionNotifier::shared(), m_workspace,
                         m_pasteboard, [] { return true; }}};
};

}
