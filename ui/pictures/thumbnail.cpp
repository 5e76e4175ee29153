// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/pictures/thumbnail.h"

#include "ui/design/image_node.h"
#include "ui/pictures/web_picture.h"

#include <QCache>
#include <QMetaObject>
#include <QQuickWindow>
#include <QThread>
#include <QThreadPool>

#include <atomic>
#include <mutex>
#include <utility>

namespace veltro {
namespace {

// In kibibytes: some three screens of tiles.
constexpr int keptPictures = 48 * 1024;
constexpr int decoderThreads = 2;

struct PictureKey {
    QUrl source;
    PictureFrame frame;
    bool operator==(const PictureKey &) const = default;
};

size_t qHash(const PictureKey &key, size_t seed)
{
    return qHashMulti(seed, key.source, key.frame.pixels.width(), key.frame.pixels.height());
}

// Main thread.
QCache<PictureKey, QImage> &pictureCache()
{
    static QCache<PictureKey, QImage> cache(keptPictures);
    return cache;
}

QThreadPool &decoders()
{
    // Ended with the process, after what it still decodes.
    static QThreadPool pool;
    static const bool isPrepared = [] {
        pool.setMaxThreadCount(decoderThreads);
        pool.setThreadPriority(QThread::LowPriority);
        pool.setObjectName(QStringLiteral("veltro.thumbnails"));
        return true;
    }();
    Q_UNUSED(isPrepared);
    return pool;
}

// Tiles come into view and go again while one scrolls: what came last is what is looked at.
int nextWishPriority()
{
    static int priority = 0;
    return ++priority;
}

}

struct Thumbnail::Wish {
    explicit Wish(Thumbnail *who) : item(who) {}
    std::atomic<bool> isDropped = false;
    std::mutex lock;
    Thumbnail *item; // guarded by lock; null when dropped
};

Thumbnail::Thumbnail(QQuickItem *parent) : QQuickItem(parent)
{
    setFlag(ItemHasContents);
}

Thumbnail::~Thumbnail()
{
    drop();
}

void Thumbnail::setSource(const QUrl &source)
{
    if (m_source != source) {
        m_source = source;
        Q_EMIT sourceChanged();
        polish();
    }
}

void Thumbnail::setOrigin(Origin origin)
{
    if (m_origin != origin) {
        m_origin = origin;
        Q_EMIT originChanged();
        polish();
    }
}

void Thumbnail::setRadius(double radius)
{
    if (m_radius != radius) {
        m_radius = radius;
        Q_EMIT radiusChanged();
        polish();
    }
}

void Thumbnail::setStatus(Status status)
{
    if (m_status != status) {
        m_status = status;
        Q_EMIT statusChanged();
    }
}

void Thumbnail::componentComplete()
{
    QQuickItem::componentComplete();
    polish();
}

void Thumbnail::itemChange(ItemChange change, const ItemChangeData &data)
{
    if (change == ItemDevicePixelRatioHasChanged || change == ItemSceneChange) {
        polish();
    }
    QQuickItem::itemChange(change, data);
}

void Thumbnail::geometryChange(const QRectF &newGeometry, const QRectF &oldGeometry)
{
    QQuickItem::geometryChange(newGeometry, oldGeometry);
    if (newGeometry.size() != oldGeometry.size()) {
        polish();
    }
}

PictureFrame Thumbnail::frame() const
{
    const double ratio = window() ? window()->effectiveDevicePixelRatio() : 1;
    return {(size() * ratio).toSize(), m_radius * ratio};
}

bool Thumbnail::isAllowed() const
{
    return m_origin == Origin::Web ? isWebAddress(m_source) : m_source.isLocalFile();
}

void Thumbnail::drop()
{
    if (const auto wish = std::exchange(m_wish, nullptr)) {
        wish->isDropped = true;
        const std::scoped_lock guard(wish->lock);
        wish->item = nullptr;
    }
    // Its announcement may be on the way; without the connection it is not delivered.
    if (WebPicture *transfer = std::exchange(m_transfer, nullptr)) {
        disconnect(transfer, nullptr, this, nullptr);
        transfer->deleteLater();
    }
}

// Once a frame at most, however many of its properties change.
void Thumbnail::updatePolish()
{
    const PictureFrame wanted = frame();
    const bool isOther = m_source != m_shownSource || m_origin != m_shownOrigin;
    if (!window() || (!isOther && wanted == m_shownFrame)) {
        return;
    }
    drop();
    m_shownSource = m_source;
    m_shownOrigin = m_origin;
    m_shownFrame = wanted;
    if (isOther) { // the same picture in another size is shown as it is until then
        m_picture = {};
        m_pictureIsNew = true;
        update();
    }
    if (m_source.isEmpty() || wanted.pixels.isEmpty()) {
        setStatus(Status::Nothing);
    } else if (!isAllowed()) {
        setStatus(Status::Failed);
    } else if (m_origin == Origin::Web) {
        fetch();
    } else {
        decode();
    }
}

void Thumbnail::fetch()
{
    setStatus(Status::Loading);
    m_transfer = new WebPicture(m_shownSource, m_shownFrame);
    connect(m_transfer, &WebPicture::finished, this, [this](const QImage &picture) {
        drop();
        take(picture);
    });
    m_transfer->moveToThread(&webPictureThread());
    QMetaObject::invokeMethod(m_transfer, &WebPicture::start, Qt::QueuedConnection);
}

void Thumbnail::decode()
{
    const PictureKey key{m_shownSource, m_shownFrame};
    if (const QImage *kept = pictureCache().object(key)) {
        take(*kept);
        return;
    }
    setStatus(Status::Loading);
    m_wish = std::make_shared<Wish>(this);
    const auto fulfil = [wish = m_wish, key] {
        if (wish->isDropped) {
            return;
        }
        const QImage picture = framedFile(key.source.toLocalFile(), key.frame);
        const std::scoped_lock guard(wish->lock);
        if (!wish->item) {
            return;
        }
        const auto deliver = [item = wish->item, wish, key, picture] {
            if (!picture.isNull()) {
                pictureCache().insert(key, new QImage(picture),
                                      static_cast<int>(picture.sizeInBytes() / 1024) + 1);
            }
            if (!wish->isDropped) {
                item->m_wish = nullptr;
                item->take(picture);
            }
        };
        QMetaObject::invokeMethod(wish->item, deliver, Qt::QueuedConnection);
    };
    decoders().start(fulfil, nextWishPriority());
}

void Thumbnail::take(const QImage &picture)
{
    m_picture = picture;
    m_pictureIsNew = true;
    setStatus(picture.isNull() ? Status::Failed : Status::Ready);
    update();
}

QSGNode *Thumbnail::updatePaintNode(QSGNode *old, UpdatePaintNodeData *)
{
    if (m_picture.isNull()) {
        delete old;
        return nullptr;
    }
    QSGImageNode *node = imageNode(old, *window(), QSGTexture::Linear);
    if (std::exchange(m_pictureIsNew, false) || !old) {
        node->setTexture(window()->createTextureFromImage(m_picture));
    }
    node->setRect(boundingRect());
    return node;
}

}
