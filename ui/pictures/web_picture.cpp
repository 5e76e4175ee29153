// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/pictures/web_picture.h"

#include <QBuffer>
#include <QCoreApplication>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QNetworkRequest>
#include <QThread>
#include <QTimer>

#include <memory>
#include <utility>

namespace veltro {
namespace {

std::unique_ptr<QThread> &webThreadSlot()
{
    static std::unique_ptr<QThread> thread;
    return thread;
}

// Before the libraries are unloaded.
void endWebThread()
{
    if (const std::unique_ptr<QThread> thread = std::move(webThreadSlot())) {
        thread->quit();
        thread->wait();
    }
}

}

QThread &webPictureThread()
{
    std::unique_ptr<QThread> &thread = webThreadSlot();
    if (!thread) {
        thread = std::make_unique<QThread>();
        thread->setObjectName(QStringLiteral("com.veltro.thumbnail"));
        thread->start(QThread::LowPriority);
        qAddPostRoutine(endWebThread);
    }
    return *thread;
}

bool isWebAddress(const QUrl &address)
{
    const QString scheme = address.scheme();
    return address.isValid() && !address.host().isEmpty() &&
           (scheme == QLatin1String("http") || scheme == QLatin1String("https"));
}

WebPicture::WebPicture(QUrl address, PictureFrame frame, WebPictureLimits limits)
    : m_address(std::move(address)), m_frame(frame), m_limits(limits)
{}

WebPicture::~WebPicture()
{
    if (m_reply) {
        m_reply->disconnect(this);
    }
}

void WebPicture::start()
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

void WebPicture::ask(const QUrl &address)
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
    connect(m_reply, &QNetworkReply::readyRead, this, &WebPicture::takeBytes);
    connect(m_reply, &QNetworkReply::finished, this, &WebPicture::finish);
}

void WebPicture::takeBytes()
{
    m_data += m_reply->read(m_limits.bytes + 1 - m_data.size());
    if (m_data.size() > m_limits.bytes) {
        m_reply->abort();
    }
}

void WebPicture::finish()
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
    if (m_data.size() > m_limits.bytes) {
        Q_EMIT finished({});
        return;
    }
    QBuffer encoded(&m_data);
    encoded.open(QIODevice::ReadOnly);
    Q_EMIT finished(framedPicture(encoded, m_frame));
}

void WebPicture::follow(const QUrl &target)
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
