// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/single_instance.h"

#include "platform/application_object.h"
#include "platform/hand_over_socket.h"
#include "platform/program_address.h"

#include <utility>

namespace veltro {
namespace {

QList<QUrl> addressesOf(const QStringList &links)
{
    QList<QUrl> addresses;
    for (const QString &link : links) {
        if (const std::optional<QUrl> address = programAddress(link)) {
            addresses += *address;
        }
    }
    return addresses;
}

}

SingleInstance::SingleInstance(QObject *parent) : QObject(parent) {}

SingleInstance::~SingleInstance() = default;

SingleInstance::Outcome SingleInstance::start(const QStringList &links)
{
    // Each is a child, and ends with this.
    auto *const application = new ApplicationObject(*this);
    ApplicationObject::Outcome outcome = application->start(links, ownActivationToken());
    if (outcome == ApplicationObject::Outcome::noBus) {
        auto *const socket = new HandOverSocket(*this);
        if (socket->start(links, ownActivationToken()) == Outcome::handedOver) {
            return Outcome::handedOver;
        }
    } else if (outcome == ApplicationObject::Outcome::handedOver) {
        return Outcome::handedOver;
    }
    Request own;
    own.isOwnStart = true;
    own.addresses = addressesOf(links);
    takeRequest(std::move(own));
    return Outcome::first;
}

void SingleInstance::setReady()
{
    m_isReady = true;
    for (const Request &request : std::exchange(m_kept, {})) {
        deliver(request);
    }
}

void SingleInstance::take(const QStringList &links, const QString &activationToken)
{
    Request request;
    request.activationToken = activationToken;
    request.addresses = addressesOf(links);
    takeRequest(std::move(request));
}

void SingleInstance::takeSearch(const QString &text, const QString &activationToken)
{
    Request request;
    request.search = text;
    request.activationToken = activationToken;
    takeRequest(std::move(request));
}

void SingleInstance::takeRequest(Request request)
{
    if (m_isReady) {
        deliver(request);
    } else {
        m_kept.push_back(std::move(request));
    }
}

void SingleInstance::deliver(const Request &request)
{
    if (!request.isOwnStart) {
        Q_EMIT activated(request.activationToken);
    }
    for (const QUrl &address : request.addresses) {
        if (const std::optional<QUuid> item = libraryItemOf(address)) {
            Q_EMIT itemOpened(*item);
        } else {
            Q_EMIT linkOpened(address);
        }
    }
    if (!request.search.isEmpty()) {
        Q_EMIT searchRequested(request.search);
    }
}

QString ownActivationToken()
{
    const QString token = qEnvironmentVariable("XDG_ACTIVATION_TOKEN");
    return token.isEmpty() ? qEnvironmentVariable("DESKTOP_STARTUP_ID") : token;
}

}
