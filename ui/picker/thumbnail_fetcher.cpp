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
    : m_address(std::move(address))
    , m_shape(shape)
    , m_limits(limits)
{
}

ThumbnailFetcher::~ThumbnailFetcher()
{
    if (m_reply) {
        m_reply->disconnect(this);
    }
}

QNetworkRequest ThumbnailFetcher::request() const
{
    QNetworkRequest request(m_address);
    request.setAttribute(QNetworkRequest::RedirectPolicyAttribute,
                         QNetworkRequest::UserVerifiedRedirectPolicy);
    request.setAttribute(QNetworkRequest::CookieLoadControlAttribute, QNetworkRequest::Manual);
    request.setAttribute(QNetworkRequest::CookieSaveControlAttribute, QNetworkRequest::Manual);
    request.setMaximumRedirectsAllowed(m_limits.redirects);
    // Nothing is unpacked on the way, so that the bound on bytes holds.
    request.setRawHeader("Accept-Encoding", "identity");
    return request;
}

void ThumbnailFetcher::start()
{
    if (!isWebAddress(m_address)) {
        finish();
        return;
    }
    m_network = new QNetworkAccessManager(this);
    m_reply = m_network->get(request());
    m_reply->setReadBufferSize(64 * 1024);
    connect(m_reply, &QNetworkReply::redirected, this, [this](const QUrl &target) {
        if (isWebAddress(target)) {
            Q_EMIT m_reply->redirectAllowed();
        } else {
            m_reply->abort();
        }
    });
    connect(m_reply, &QNetworkReply::readyRead, this, &ThumbnailFetcher::takeBytes);
    connect(m_reply, &QNetworkReply::finished, this, &ThumbnailFetcher::finish);
    // The whole of it, not the pause between two packets.
    QTimer::singleShot(m_limits.milliseconds, m_reply, &QNetworkReply::abort);
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
    QImage picture;
    if (m_reply && m_reply->error() == QNetworkReply::NoError) {
        m_data += m_reply->read(m_limits.bytes + 1 - m_data.size());
        if (m_data.size() <= m_limits.bytes) {
            picture = thumbnailPicture(m_data, m_shape);
        }
    }
    Q_EMIT finished(picture);
}

}
