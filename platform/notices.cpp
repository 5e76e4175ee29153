// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/notices.h"

#include "platform/program_identity.h"

#include <QCoro/QCoroDBus>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCall>
#include <QHash>
#include <QVariantMap>

#include <utility>

namespace veltro {
namespace {

// A service that is started on demand may take this long.
constexpr int answerMilliseconds = 15'000;
// More than any service shows; the rest would only be carried about.
constexpr qsizetype longestNoticeBody = 2'000;

QDBusMessage noticeCall(const QString &method)
{
    const QString name = QStringLiteral("org.freedesktop.Notifications");
    return QDBusMessage::createMethodCall(name, QStringLiteral("/org/freedesktop/Notifications"),
                                          name, method);
}

QCoro::Task<QDBusMessage> answerTo(QDBusMessage request)
{
    const QDBusConnection bus = QDBusConnection::sessionBus();
    if (!bus.isConnected()) {
        co_return request.createErrorReply(QDBusError::Disconnected,
                                           QStringLiteral("There is no session bus."));
    }
    const QDBusPendingCall pending = bus.asyncCall(request, answerMilliseconds);
    co_return co_await pending;
}

/// What the service can do; nothing when none answers.
QCoro::Task<std::optional<QStringList>> capabilities()
{
    const QDBusMessage answer = co_await answerTo(noticeCall(QStringLiteral("GetCapabilities")));
    if (answer.type() != QDBusMessage::ReplyMessage) {
        co_return std::nullopt;
    }
    co_return answer.arguments().value(0).toStringList();
}

/// The bus takes no zero characters, and a service that knows markup would read it in titles.
QString bodyFor(const QStringList &service, QString body)
{
    body.truncate(longestNoticeBody);
    body.remove(QChar::Null);
    return service.contains(QLatin1String("body-markup")) ? body.toHtmlEscaped() : body;
}

QVariantMap hintsFor(const Notice &notice)
{
    QVariantMap hints{
        {QStringLiteral("desktop-entry"), programIdentifier()},
        {QStringLiteral("category"), QStringLiteral("transfer.complete")},
        {QStringLiteral("urgency"), QVariant::fromValue(uchar(1))},
    };
    if (notice.defaultSound) {
        hints.insert(QStringLiteral("sound-name"), QStringLiteral("complete-download"));
    } else {
        hints.insert(QStringLiteral("suppress-sound"), true);
    }
    return hints;
}

}

QCoro::Task<AuthorizationStatus> DBusNoticeCenter::authorizationStatus()
{
    const std::optional<QStringList> service = co_await capabilities();
    co_return service ? AuthorizationStatus::authorized : AuthorizationStatus::denied;
}

QCoro::Task<bool> DBusNoticeCenter::requestAuthorization()
{
    const std::optional<QStringList> service = co_await capabilities();
    co_return service.has_value();
}

QCoro::Task<void> DBusNoticeCenter::add(Notice notice)
{
    const std::optional<QStringList> service = co_await capabilities();
    if (!service) {
        throw NoticeError("No notification service answers.");
    }
    // Numbers of the service for the identifiers of this process, so that a later notice can take
    // the place of an earlier one.
    static QHash<QString, uint> numbers;
    QDBusMessage request = noticeCall(QStringLiteral("Notify"));
    request << QStringLiteral("Veltro") << numbers.value(notice.identifier) << programIdentifier()
            << notice.title << bodyFor(*service, notice.body) << QStringList() << hintsFor(notice)
            << -1;
    const QDBusMessage answer = co_await answerTo(request);
    if (answer.type() != QDBusMessage::ReplyMessage) {
        throw NoticeError(answer.errorMessage().toStdString());
    }
    numbers.insert(notice.identifier, answer.arguments().value(0).toUInt());
}

}
