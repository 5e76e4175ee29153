// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once
#include "ui/picker/thumbnail_picture.h"

#include <QPointer>
#include <QQuickItem>
#include <QUrl>
#include <QtQml/qqmlregistration.h>

namespace veltro {

class ThumbnailFetcher;

/// A picture from the web that fills the item, with round corners. Fetching and decoding happen on
/// a thread that all items of this kind share and that ends with the application; a new source or
/// the end of the item drops what is under way. Only http and https are ever asked.
/// Main thread, but updatePaintNode.
class RemoteThumbnail : public QQuickItem {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(QUrl source READ source WRITE setSource NOTIFY sourceChanged)
    Q_PROPERTY(double radius READ radius WRITE setRadius NOTIFY radiusChanged)
    Q_PROPERTY(Status status READ status NOTIFY statusChanged)
public:
    enum Status { Nothing, Loading, Ready, Failed };
    Q_ENUM(Status)

    explicit RemoteThumbnail(QQuickItem *parent = nullptr);
    ~RemoteThumbnail() override;

    [[nodiscard]] QUrl source() const { return m_source; }
    void setSource(const QUrl &source);
    /// In logical pixels, as the item's size.
    [[nodiscard]] double radius() const { return m_radius; }
    void setRadius(double radius);
    [[nodiscard]] Status status() const { return m_status; }

Q_SIGNALS:
    void sourceChanged();
    void radiusChanged();
    void statusChanged();

protected:
    void componentComplete() override;
    void itemChange(ItemChange change, const ItemChangeData &data) override;
    void geometryChange(const QRectF &newGeometry, const QRectF &oldGeometry) override;
    QSGNode *updatePaintNode(QSGNode *old, UpdatePaintNodeData *data) override;

private:
    [[nodiscard]] ThumbnailShape shape() const;
    /// Loads again when the source or the pixels to fill are others than before.
    void reload();
    void drop();
    void take(const QImage &picture);
    void setStatus(Status status);

    QUrl m_source;
    double m_radius = 0;
    Status m_status = Nothing;
    QUrl m_loadedSource;
    ThumbnailShape m_loadedShape;
    /// Lives on the shared thread, and is deleted there when drop() says so.
    ThumbnailFetcher *m_fetcher = nullptr;
    QImage m_picture;
    bool m_pictureIsNew = false;
};

}
