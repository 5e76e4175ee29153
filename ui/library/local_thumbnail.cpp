// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/library/local_thumbnail.h"

#include <QCache>
#include <QMetaObject>
#include <QQuickWindow>
#include <QSGImageNode>
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

struct LocalThumbnail::Wish {
    explicit Wish(LocalThumbnail *who) : item(who) {}
    std::atomic<bool> isDropped = false;
    std::mutex lock;
    LocalThumbnail *item; // guarded by lock; null when dropped
};

LocalThumbnail::LocalThumbnail(QQuickItem *parent) : QQuickItem(parent)
{
    setFlag(ItemHasContents);
}

LocalThumbnail::~LocalThumbnail()
{
    drop();
}

void LocalThumbnail::setSource(const QUrl &source)
{
    if (m_source != source) {
        m_source = source;
        Q_EMIT sourceChanged();
        polish();
    }
}

void LocalThumbnail::setRadius(double radius)
{
    if (m_radius != radius) {
        m_radius = radius;
        Q_EMIT radiusChanged();
        polish();
    }
}

void LocalThumbnail::setStatus(Status status)
{
    if (m_status != status) {
        m_status = status;
        Q_EMIT statusChanged();
    }
}

void LocalThumbnail::componentComplete()
{
    QQuickItem::componentComplete();
    polish();
}

void LocalThumbnail::itemChange(ItemChange change, const ItemChangeData &data)
{
    if (change == ItemDevicePixelRatioHasChanged || change == ItemSceneChange) {
        polish();
    }
    QQuickItem::itemChange(change, data);
}

void LocalThumbnail::geometryChange(const QRectF &newGeometry, const QRectF &oldGeometry)
{
    QQuickItem::geometryChange(newGeometry, oldGeometry);
    if (newGeometry.size() != oldGeometry.size()) {
        polish();
    }
}

PictureFrame LocalThumbnail::frame() const
{
    const double ratio = window() ? window()->effectiveDevicePixelRatio() : 1;
    return {(size() * ratio).toSize(), m_radius * ratio};
}

void LocalThumbnail::drop()
{
    if (const auto wish = std::exchange(m_wish, nullptr)) {
        wish->isDropped = true;
        const std::scoped_lock guard(wish->lock);
        wish->item = nullptr;
    }
}

// Once a frame at most, however many of its properties change.
void LocalThumbnail::updatePolish()
{
    const PictureKey key{m_source, frame()};
    if (!window() || (key.source == m_shownSource && key.frame == m_shownFrame)) {
        return;
    }
    drop();
    const bool isOther = key.source != m_shownSource;
    m_shownSource = key.source;
    m_shownFrame = key.frame;
    if (isOther) { // the same picture in another size is shown as it is until then
        m_picture = {};
        m_pictureIsNew = true;
        update();
    }
    if (!key.source.isLocalFile() || key.frame.pixels.isEmpty()) {
        setStatus(key.source.isEmpty() ? Status::Nothing : Status::Failed);
        return;
    }
    if (const QImage *kept = pictureCache().object(key)) {
        take(*kept);
        return;
    }
    setStatus(Status::Loading);
    m_wish = std::make_shared<Wish>(this);
    decoders().start(
        [wish = m_wish, key] {
            if (wish->isDropped) {
                return;
            }
            const QImage picture = localPicture(key.source.toLocalFile(), key.frame);
            const std::scoped_lock guard(wish->lock);
            if (!wish->item) {
                return;
            }
            QMetaObject::invokeMethod(
                wish->item,
                [item = wish->item, wish, key, picture] {
                    if (!picture.isNull()) {
                        pictureCache().insert(key, new QImage(picture),
                                              static_cast<int>(picture.sizeInBytes() / 1024) + 1);
                    }
                    if (!wish->isDropped) {
                        item->m_wish = nullptr;
                        item->take(picture);
                    }
                },
                Qt::QueuedConnection);
        },
        nextWishPriority());
}

void LocalThumbnail::take(const QImage &picture)
{
    m_picture = picture;
    m_pictureIsNew = true;
    setStatus(picture.isNull() ? Status::Failed : Status::Ready);
    update();
}

QSGNode *LocalThumbnail::updatePaintNode(QSGNode *old, UpdatePaintNodeData *)
{
    if (m_picture.isNull()) {
        delete old;
        return nullptr;
    }
    auto *node = static_cast<QSGImageNode *>(old);
    if (!node) {
        node = window()->createImageNode();
        node->setOwnsTexture(true);
        node->setFiltering(QSGTexture::Linear);
    }
    if (std::exchange(m_pictureIsNew, false) || !old) {
        node->setTexture(window()->createTextureFromImage(m_picture));
    }
    node->setRect(boundingRect());
    return node;
}

}
