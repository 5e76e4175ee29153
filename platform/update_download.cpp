// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/update_download.h"

#include "platform/update_feed.h"

#include <utility>

namespace veltro {

UpdateDownload::UpdateDownload(QUrl address, qint64 mostBytes, QObject *parent)
    : QObject(parent), m_address(std::move(address)), m_mostBytes(mostBytes)
{}

UpdateDownload::~UpdateDownload()
{
    end(QString());
}

void UpdateDownload::start(QNetworkAccessManager &network, const QString &file)
{
    constexpr int silenceMilliseconds = 30'000;
    if (!file.isEmpty()) {
        m_file = std::make_unique<QFile>(file);
        if (!m_file->open(QIODevice::WriteOnly | QIODevice::Truncate)) {
            const QString failure = m_file->errorString();
            QMetaObject::invokeMethod(
                this, [this, failure] { Q_EMIT ended(failure); }, Qt::QueuedConnection);
            return;
        }
    }
    QNetworkRequest request(m_address);
    request.setAttribute(QNetworkRequest::RedirectPolicyAttribute,
                         QNetworkRequest::UserVerifiedRedirectPolicy);
    request.setAttribute(QNetworkRequest::CacheLoadControlAttribute,
                         QNetworkRequest::AlwaysNetwork);
    request.setAttribute(QNetworkRequest::CookieSaveControlAttribute, QNetworkRequest::Manual);
    // A compressed answer could grow without measure.
    request.setRawHeader("Accept-Encoding", "identity");
    request.setTransferTimeout(silenceMilliseconds);
    m_reply = network.get(request);
    connect(m_reply, &QNetworkReply::redirected, this, [this](const QUrl &target) {
        if (isUpdateAddress(target)) {
            Q_EMIT m_reply->redirectAllowed();
        } else {
            end(tr("The server leads to an address that is not safe."));
        }
    });
    connect(m_reply, &QNetworkReply::readyRead, this, &UpdateDownload::takeArrived);
    connect(m_reply, &QNetworkReply::finished, this, [this] {
        takeArrived();
        if (m_reply) {
            const bool isWhole = m_reply->error() == QNetworkReply::NoError;
            end(isWhole ? QString() : m_reply->errorString());
        }
    });
}

void UpdateDownload::takeArrived()
{
    const QByteArray arrived = m_reply ? m_reply->readAll() : QByteArray();
    if (arrived.isEmpty()) {
        return;
    }
    m_bytes += arrived.size();
    if (m_bytes > m_mostBytes) {
        end(tr("The server sends more than it should."));
        return;
    }
    m_digest.addData(arrived);
    if (!m_file) {
        m_content += arrived;
    } else if (m_file->write(arrived) != arrived.size()) {
        end(m_file->errorString());
        return;
    }
    Q_EMIT progressed(m_bytes);
}

void UpdateDownload::end(const QString &failure)
{
    QNetworkReply *const reply = std::exchange(m_reply, nullptr);
    if (!reply) {
        return;
    }
    reply->disconnect(this);
    reply->abort();
    reply->deleteLater();
    QString reason = failure;
    if (m_file && reason.isEmpty() && !m_file->flush()) {
        reason = m_file->errorString();
    }
    m_file.reset();
    Q_EMIT ended(reason);
}

}
