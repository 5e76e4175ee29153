// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "library/completion_notifier.h"

#include <QUuid>

#include <utility>

namespace veltro {

CompletionNotifier &CompletionNotifier::shared()
{
    static CompletionNotifier notifier(std::make_unique<DBusNoticeCenter>());
    return notifier;
}

CompletionNotifier::CompletionNotifier(std::unique_ptr<NoticeCenter> center)
    : m_center(std::move(center))
{}

QCoro::Task<bool> CompletionNotifier::ensureAuthorized()
{
    const AuthorizationStatus status = co_await m_center->authorizationStatus();
    switch (status) {
    case AuthorizationStatus::authorized:
    case AuthorizationStatus::provisional:
    case AuthorizationStatus::ephemeral:
        co_return true;
    case AuthorizationStatus::denied:
        co_return false;
    case AuthorizationStatus::notDetermined:
        break;
    }
    if (std::exchange(m_requestedAuth, true)) {
        co_return false;
    }
    try {
        co_return co_await m_center->requestAuthorization();
    } catch (const std::exception &) {
        // A question that could not be put counts as refused.
        co_return false;
    }
}

QCoro::Task<void> CompletionNotifier::notify(QString title)
{
    const bool mayPost = co_await ensureAuthorized();
    if (!mayPost) {
        co_return;
    }
    Notice notice;
    notice.identifier = QUuid::createUuid().toString(QUuid::WithoutBraces);
    notice.title = QStringLiteral("Saved to your library");
    notice.body = std::move(title);
    notice.defaultSound = true;
    co_await m_center->add(std::move(notice));
}

}
