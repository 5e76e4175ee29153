// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/picker/remote_thumbnail.h"

#include "ui/picker/thumbnail_fetcher.h"

#include <QCoreApplication>
#include <QQuickWindow>
#include <QSGImageNode>
#include <QSGTexture>
#include <QThread>

#include <memory>

namespace veltro {
namespace {

std::unique_ptr<QThread> &thumbnailThreadSlot()
{
    static std::unique_ptr<QThread> thread;
    return thread;
}

void endThumbnailThread()
{
    if (std::unique_ptr<QThread> thread = std::move(thumbnailThreadSlot())) {
        thread->quit();
        thread->wait();
    }
}

/// Started on first use; ends with the application object, before the libraries are unloaded.
QThread &thumbnailThread()
{
    std::unique_ptr<QThread> &thread = thumbnailThreadSlot();
    if (!thread) {
        thread = std::make_unique<QThread>();
        thread->setObjectName(QStringLiteral("com.veltro.thumbnail"));
        thread->start(QThread::LowPriority);
        qAddPostRoutine(endThumbnailThread);
    }
    return *thread;
}

}

RemoteThumbnail::RemoteThumbnail(QQuickItem *parent) : QQuickItem(parent)
{
    setFlag(ItemHasContents);
}

RemoteThumbnail::~RemoteThumbnail()
{
    drop();
}

void RemoteThumbnail::setSource(const QUrl &source)
{
    if (m_source != source) {
        m_source = source;
        reload();
        Q_EMIT sourceChanged();
    }
}

void RemoteThumbnail::setRadius(double radius)
{
    if (m_radius != radius) {
        m_radius = radius;
        reload();
        Q_EMIT radiusChanged();
    }
}

void RemoteThumbnail::componentComplete()
{
    QQuickItem::componentComplete();
    reload();
}

void RemoteThumbnail::itemChange(ItemChange change, const ItemChangeData &data)
{
    QQuickItem::itemChange(change, data);
    if (change == ItemSceneChange || change == ItemDevicePixelRatioHasChanged) {
        reload();
    }
}

void RemoteThumbnail::geometryChange(const QRectF &newGeometry, const QRectF &oldGeometry)
{
    QQuickItem::geometryChange(newGeometry, oldGeometry);
    reload();
    update();
}

ThumbnailShape RemoteThumbnail::shape() const
{
    const double ratio = window() ? window()->effectiveDevicePixelRatio() : 1;
    return {(size() * ratio).toSize(), m_radius * ratio};
}

void RemoteThumbnail::reload()
{
    if (!isComponentComplete() || !window()) {
        return;
    }
    const ThumbnailShape wanted = shape();
    if (m_source == m_loadedSource && wanted == m_loadedShape) {
        return;
    }
    drop();
    m_loadedSource = m_source;
    m_loadedShape = wanted;
    take({});
    if (m_source.isEmpty() || wanted.pixels.isEmpty()) {
        setStatus(Nothing);
        return;
    }
    if (!isWebAddress(m_source)) {
        setStatus(Failed);
        return;
    }
    setStatus(Loading);
    m_fetcher = new ThumbnailFetcher(m_source, wanted);
    connect(m_fetcher, &ThumbnailFetcher::finished, this, [this](const QImage &picture) {
        drop();
        take(picture);
        setStatus(picture.isNull() ? Failed : Ready);
    });
    m_fetcher->moveToThread(&thumbnailThread());
    QMetaObject::invokeMethod(m_fetcher, &ThumbnailFetcher::start, Qt::QueuedConnection);
}

void RemoteThumbnail::drop()
{
    // An announcement may be on its way to us; without the connection it is not delivered.
    if (ThumbnailFetcher *fetcher = std::exchange(m_fetcher, nullptr)) {
        disconnect(fetcher, nullptr, this, nullptr);
        fetcher->deleteLater();
    }
}

void RemoteThumbnail::take(const QImage &picture)
{
    m_picture = picture;
    m_pictureIsNew = true;
    update();
}

void RemoteThumbnail::setStatus(Status status)
{
    if (m_status != status) {
        m_status = status;
        Q_EMIT statusChanged();
    }
}

QSGNode *RemoteThumbnail::updatePaintNode(QSGNode *old, UpdatePaintNodeData *)
{
    auto *node = static_cast<QSGImageNode *>(old);
    if (m_picture.isNull()) {
        delete node;
        return nullptr;
    }
    if (!node) {
        node = window()->createImageNode();
        node->setOwnsTexture(true);
        m_pictureIsNew = true;
    }
    if (m_pictureIsNew) {
        node->setTexture(window()->createTextureFromImage(m_picture));
        m_pictureIsNew = false;
    }
    node->setRect(boundingRect());
    node->setFiltering(QSGTexture::Linear);
    return node;
}

}
