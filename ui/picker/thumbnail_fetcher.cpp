// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/picker/thumbnail_fetcher.h"

#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QNetworkRequest>
#include <QTimer>

#include <utility>

namespace veltro {

bool isWebAddress(const QUrl &address)
{
    const QString scheme = address.scheme();
    return address.isValid() && !address.host().isEmpty() &&
           (scheme == QLatin1String("http") || scheme == QLatin1String("https"));
}

ThumbnailFetcher::ThumbnailFetcher(QUrl address, ThumbnailShape shape, ThumbnailLimits limits)
    : m_address(std::move(address)), m_shape(shape), m_limits(limits)
{}

ThumbnailFetcher::~ThumbnailFetcher()
{
    if (m_reply) {
        m_reply->disconnect(this);
    }
}

void ThumbnailFetcher::start()
{
    if (!isWebAddress(m_address)) {
        Q_EMIT finished({});
        return;
    }
    m_network = new QNetworkAccessManager(this);
    // The whole of it, not the pause between two packets.
    QTimer::singleShot(m_limits.milliseconds, this, [this] { m_reply->abort(); });
    ask(m_address);
}

void ThumbnailFetcher::ask(const QUrl &address)
{
    QNetworkRequest request(address);
    request.setAttribute(QNetworkRequest::RedirectPolicyAttribute,
                         QNetworkRequest::ManualRedirectPolicy);
    request.setAttribute(QNetworkRequest::CookieLoadControlAttribute, QNetworkRequest::Manual);
    request.setAttribute(QNetworkRequest::CookieSaveControlAttribute, QNetworkRequest::Manual);
    // Nothing is unpacked on the way, so that the bound on bytes holds.
    request.setRawHeader("Accept-Encoding", "identity");
    m_reply = m_network->get(request);
    m_reply->setReadBufferSize(64 * 1024);
    connect(m_reply, &QNetworkReply::readyRead, this, &ThumbnailFetcher::takeBytes);
    connect(m_reply, &QNetworkReply::finished, this, &ThumbnailFetcher::finish);
}

void ThumbnailFetcher::takeBytes()
{
    m_data += m_reply->read(m_limits.bytes + 1 - m_data.size());
    if (m_data.size() > m_limits.bytes) {
        m_reply->abort();
    }
}

void ThumbnailFetcher::finish()
{
    if (m_reply->error() != QNetworkReply::NoError) {
        Q_EMIT finished({});
        return;
    }
    const QUrl target = m_reply->attribute(QNetworkRequest::RedirectionTargetAttribute).toUrl();
    if (!target.isEmpty()) {
        follow(m_reply->url().resolved(target));
        return;
    }
    takeBytes();
    Q_EMIT finished(m_data.size() <= m_limits.bytes ? thumbnailPicture(m_data, m_shape) : QImage());
}

void ThumbnailFetcher::follow(const QUrl &target)
{
    if (++m_redirects > m_limits.redirects || !isWebAddress(target)) {
        Q_EMIT finished({});
        return;
    }
    m_data.clear();
    m_reply->deleteLater();
    ask(target);
}

}
