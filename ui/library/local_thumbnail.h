// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once
#include "ui/library/local_picture.h"

#include <QQuickItem>
#include <QUrl>
#include <QtQml/qqmlregistration.h>

#include <memory>

namespace veltro {

/// A picture file that fills the item, with round corners. Decoding happens on threads that all
/// items share, the latest wish first; a new source or the item's end drops a wish. What was shown
/// lately is kept. Main thread, but updatePaintNode.
class LocalThumbnail : public QQuickItem {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(QUrl source READ source WRITE setSource NOTIFY sourceChanged)
    Q_PROPERTY(double radius READ radius WRITE setRadius NOTIFY radiusChanged)
    Q_PROPERTY(Status status READ status NOTIFY statusChanged)

public:
    enum class Status { Nothing, Loading, Ready, Failed };
    Q_ENUM(Status)

    explicit LocalThumbnail(QQuickItem *parent = nullptr);
    ~LocalThumbnail() override;

    [[nodiscard]] const QUrl &source() const { return m_source; }
    void setSource(const QUrl &source);
    /// In logical pixels.
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
    struct Wish; // shared with the thread that fulfils it

    void updatePolish() override;
    [[nodiscard]] PictureFrame frame() const;
    void drop();
    void take(const QImage &picture);
    void setStatus(Status status);

    QUrl m_source;
    double m_radius = 0;
    Status m_status = Status::Nothing;
    QUrl m_shownSource;
    PictureFrame m_shownFrame;
    std::shared_ptr<Wish> m_wish; // null when nothing is under way
    QImage m_picture;
    bool m_pictureIsNew = false;
};

}
