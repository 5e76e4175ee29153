// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/application_object.h"

#include "platform/log.h"
#include "platform/program_identity.h"
#include "platform/single_instance.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDeadlineTimer>

namespace veltro {
namespace {

// A program that is just starting may answer late.
constexpr int handOverMilliseconds = 10'000;
// The process that has the name may end while it is called.
constexpr int handOverAttempts = 3;

QString tokenOf(const QVariantMap &platformData)
{
    const QString token = platformData.value(QStringLiteral("activation-token")).toString();
    return token.isEmpty() ? platformData.value(QStringLiteral("desktop-startup-id")).toString()
                           : token;
}

QDBusMessage handOverCall(const QStringList &links, const QString &activationToken)
{
    QVariantMap platformData;
    if (!activationToken.isEmpty()) {
        platformData.insert(QStringLiteral("activation-token"), activationToken);
        platformData.insert(QStringLiteral("desktop-startup-id"), activationToken);
    }
    QDBusMessage call = QDBusMessage::createMethodCall(
        programIdentifier(), programObjectPath(), QStringLiteral("org.freedesktop.Application"),
        links.isEmpty() ? QStringLiteral("Activate") : QStringLiteral("Open"));
    call.setAutoStartService(false);
    if (!links.isEmpty()) {
        call << links;
    }
    call << platformData;
    return call;
}

}

ApplicationObject::ApplicationObject(SingleInstance &instance)
    : QObject(&instance), m_instance(instance)
{}

ApplicationObject::Outcome ApplicationObject::start(const QStringList &links,
                                                    const QString &activationToken)
{
    QDBusConnection bus = QDBusConnection::sessionBus();
    if (!bus.isConnected()) {
        return Outcome::noBus;
    }
    // Before the name: who waits for the name calls at once.
    bus.registerObject(programObjectPath(), this, QDBusConnection::ExportAllSlots);
    for (int attempt = 0; attempt < handOverAttempts; ++attempt) {
        if (bus.registerService(programIdentifier())) {
            return Outcome::first;
        }
        const QDeadlineTimer deadline(handOverMilliseconds);
        const QDBusMessage answer =
            bus.call(handOverCall(links, activationToken), QDBus::Block, handOverMilliseconds);
        // A busy process has the call, and takes it when it comes to it. One that ended meanwhile
        // gives no reply either, but at once.
        if (answer.type() == QDBusMessage::ReplyMessage || deadline.hasExpired()) {
            return Outcome::handedOver;
        }
    }
    logLine(LogTag::engine, "another process has the program's name and takes no links");
    return Outcome::first;
}

void ApplicationObject::Activate(const QVariantMap &platformData)
{
    m_instance.take({}, tokenOf(platformData));
}

void ApplicationObject::Open(const QStringList &links, const QVariantMap &platformData)
{
    m_instance.take(links, tokenOf(platformData));
}

void ApplicationObject::ActivateAction(const QString &name, const QVariantList &parameter,
                                       const QVariantMap &platformData)
{
    if (name == QLatin1String("search")) {
        m_instance.takeSearch(parameter.value(0).toString(), tokenOf(platformData));
    } else {
        m_instance.take({}, tokenOf(platformData));
    }
}

}
