// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/search_provider/program_call.h"

#include "platform/bundle.h"
#include "platform/child_environment.h"
#include "platform/program_address.h"
#include "platform/program_identity.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QProcess>

namespace veltro {
namespace {

QDBusMessage applicationCall(const QString &method)
{
    return QDBusMessage::createMethodCall(programIdentifier(), programObjectPath(),
                                          QStringLiteral("org.freedesktop.Application"), method);
}

/// Where the bus does not know how to start the program, we do: it lies beside this helper.
void startProgram(const QStringList &arguments)
{
    QProcess process;
    process.setProgram(QString::fromStdString((Bundle::main().root() / "veltro").string()));
    process.setArguments(arguments);
    process.setProcessEnvironment(childEnvironment());
    process.startDetached();
}

void send(const QDBusMessage &call, const QStringList &argumentsOtherwise)
{
    // A program that starts answers only when it is up.
    constexpr int milliseconds = 60'000;
    auto *const answer =
        new QDBusPendingCallWatcher(QDBusConnection::sessionBus().asyncCall(call, milliseconds));
    QObject::connect(
        answer, &QDBusPendingCallWatcher::finished, answer, [answer, argumentsOtherwise] {
            answer->deleteLater();
            const QDBusPendingReply<> reply = *answer;
            if (reply.isError() && reply.error().type() == QDBusError::ServiceUnknown) {
                startProgram(argumentsOtherwise);
            }
        });
}

}

void openInProgram(const QString &identifier, const QVariantMap &startData)
{
    const QString address = libraryItemAddress(identifier).toString(QUrl::FullyEncoded);
    QDBusMessage call = applicationCall(QStringLiteral("Open"));
    call << QStringList{address} << startData;
    send(call, {address});
}

void searchInProgram(const QString &text, const QVariantMap &startData)
{
    QDBusMessage call = applicationCall(QStringLiteral("ActivateAction"));
    call << QStringLiteral("search") << QVariantList{text} << startData;
    send(call, {});
}

}
