// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/hand_over_socket.h"

#include "platform/log.h"
#include "platform/user_folders.h"

#include <QDeadlineTimer>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLocalSocket>
#include <QThread>

namespace veltro {
namespace {

constexpr int answerWithinMilliseconds = 10'000;
constexpr int retryMilliseconds = 50;
constexpr qint64 longestLine = 1 << 20;
constexpr char taken[] = "taken\n";

QString socketPath()
{
    const QString runtime = qEnvironmentVariable("XDG_RUNTIME_DIR");
    const bool isUsable = !runtime.isEmpty() && QFileInfo(runtime).isWritable();
    return (isUsable ? runtime + QStringLiteral("/veltro")
                     : dataFolder() + QStringLiteral("/start")) +
           QStringLiteral(".socket");
}

QByteArray lineOf(const QStringList &links, const QString &activationToken)
{
    const QJsonObject request{{QStringLiteral("links"), QJsonArray::fromStringList(links)},
                              {QStringLiteral("token"), activationToken}};
    return QJsonDocument(request).toJson(QJsonDocument::Compact) + '\n';
}

}

HandOverSocket::HandOverSocket(SingleInstance &instance)
    : QObject(&instance)
    , m_instance(instance)
    , m_path(socketPath())
    , m_lock(m_path + QStringLiteral(".lock"))
{
    // A lock does not grow stale with time, only with the end of its process.
    m_lock.setStaleLockTime(0);
    m_server.setSocketOptions(QLocalServer::UserAccessOption);
    connect(&m_server, &QLocalServer::newConnection, this, [this] {
        while (QLocalSocket *const client = m_server.nextPendingConnection()) {
            connect(client, &QLocalSocket::disconnected, client, &QObject::deleteLater);
            connect(client, &QLocalSocket::readyRead, this, [this, client] { serve(client); });
            serve(client);
        }
    });
}

SingleInstance::Outcome HandOverSocket::start(const QStringList &links,
                                              const QString &activationToken)
{
    const QByteArray line = lineOf(links, activationToken);
    const QDeadlineTimer deadline(answerWithinMilliseconds);
    do {
        if (m_lock.tryLock(0)) {
            QLocalServer::removeServer(m_path);
            if (!m_server.listen(m_path)) {
                logLine(LogTag::engine, "later starts cannot hand over their links: " +
                                            m_server.errorString().toStdString());
            }
            return SingleInstance::Outcome::first;
        }
        if (m_lock.error() != QLockFile::LockFailedError) {
            return SingleInstance::Outcome::first; // a folder that takes no files
        }
        if (handOver(line)) {
            return SingleInstance::Outcome::handedOver;
        }
        // The first has the lock and not yet the socket, or ends just now.
        QThread::msleep(retryMilliseconds);
    } while (!deadline.hasExpired());
    logLine(LogTag::engine, "another process of the program takes no links");
    return SingleInstance::Outcome::first;
}

bool HandOverSocket::handOver(const QByteArray &line) const
{
    QLocalSocket socket;
    socket.connectToServer(m_path);
    if (!socket.waitForConnected(retryMilliseconds)) {
        return false;
    }
    socket.write(line);
    while (socket.state() == QLocalSocket::ConnectedState && !socket.canReadLine()) {
        if (!socket.waitForReadyRead(answerWithinMilliseconds)) {
            break;
        }
    }
    return socket.readLine() == taken;
}

void HandOverSocket::serve(QLocalSocket *client)
{
    if (!client->canReadLine()) {
        if (client->bytesAvailable() > longestLine) {
            client->abort();
        }
        return;
    }
    const QJsonObject request = QJsonDocument::fromJson(client->readLine(longestLine)).object();
    QStringList links;
    const QJsonArray held = request.value(QLatin1String("links")).toArray();
    for (const auto &link : held) {
        links += link.toString();
    }
    client->write(taken);
    client->flush();
    m_instance.take(links, request.value(QLatin1String("token")).toString());
}

}
