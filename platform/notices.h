// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once
#include <QCoro/QCoroTask>
#include <QString>

#include <stdexcept>

namespace veltro {

/// Whether the user lets the program post notices.
enum class AuthorizationStatus { notDetermined, denied, authorized, provisional, ephemeral };

/// What the user is told outside the window.
struct Notice {
    QString identifier; ///< a notice with the identifier of an earlier one takes its place
    QString title;
    QString body; ///< plain text
    bool defaultSound = false;
};

/// A notice was not taken.
class NoticeError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// Where notices go. Main thread only.
class NoticeCenter {
public:
    NoticeCenter() = default;
    virtual ~NoticeCenter() = default;
    NoticeCenter(const NoticeCenter &) = delete;
    NoticeCenter &operator=(const NoticeCenter &) = delete;

    [[nodiscard]] virtual QCoro::Task<AuthorizationStatus> authorizationStatus() = 0;
    /// Asks the user, for alerts and sounds; the answer.
    [[nodiscard]] virtual QCoro::Task<bool> requestAuthorization() = 0;
    /// @throws NoticeError
    [[nodiscard]] virtual QCoro::Task<void> add(Notice notice) = 0;
};

/// The desktop's notification service, over the session bus. Such a desktop asks nobody for a
/// permission: it is "authorized" where a service answers (one that is started on demand counts),
/// and "denied" where none does or there is no session bus. Whether the user has silenced the
/// program is the service's own affair.
class DBusNoticeCenter final : public NoticeCenter {
public:
    [[nodiscard]] QCoro::Task<AuthorizationStatus> authorizationStatus() override;
    [[nodiscard]] QCoro::Task<bool> requestAuthorization() override;
    [[nodiscard]] QCoro::Task<void> add(Notice notice) override;
};

}
