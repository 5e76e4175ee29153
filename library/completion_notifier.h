// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once
#include "platform/notices.h"

#include <memory>

namespace veltro {

/// Tells the user outside the window that a download is in the library. Main thread only.
class CompletionNotifier {
public:
    /// Over the desktop's notices; lives as long as the process.
    static CompletionNotifier &shared();

    explicit CompletionNotifier(std::unique_ptr<NoticeCenter> center);

    /// Whether notices may be posted; asks the user once in the life of the process where that is
    /// still open. An error of the request counts as a refusal.
    [[nodiscard]] QCoro::Task<bool> ensureAuthorized();
    /// Posts the notice for the download of that title, where it may. @throws NoticeError
    [[nodiscard]] QCoro::Task<void> notify(QString title);

private:
    const std::unique_ptr<NoticeCenter> m_center;
    bool m_requestedAuth = false;
};

}
