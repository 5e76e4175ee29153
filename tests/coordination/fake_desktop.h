// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once
#include "platform/notices.h"
#include "platform/pasteboard.h"
#include "platform/workspace.h"

#include <vector>

namespace veltro {

// Desktops that keep what they are told. Main thread.

class FakeWorkspace final : public Workspace {
public:
    bool open(const QUrl &) override { return false; }
    using Workspace::reveal;
    void reveal(const QList<QUrl> &) override {}
    bool openWebPage(const QUrl &page) override
    {
        pages.append(page);
        return true;
    }
    void beep() override { ++beeps; }
    void haptic() override { ++ticks; }

    QList<QUrl> pages;
    int beeps = 0;
    int ticks = 0;
};

class FakePasteboard final : public Pasteboard {
public:
    [[nodiscard]] std::optional<QString> text() const override { return held; }
    void setText(const QString &text) override { held = text; }

    std::optional<QString> held;
};

/// What a fake notice center was given; outlives it.
struct NoticeBoard {
    std::vector<Notice> posted;
};

class FakeNoticeCenter final : public NoticeCenter {
public:
    explicit FakeNoticeCenter(NoticeBoard &board) : m_board(board) {}

    QCoro::Task<AuthorizationStatus> authorizationStatus() override
    {
        co_return AuthorizationStatus::authorized;
    }
    QCoro::Task<bool> requestAuthorization() override { co_return true; }
    QCoro::Task<void> add(Notice notice) override
    {
        m_board.posted.push_back(notice);
        co_return;
    }

private:
    NoticeBoard &m_board;
};

}
