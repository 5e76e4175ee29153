// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once
#include "ui/pictures/framed_picture.h"

#include <QQuickItem>
#include <QUrl>
#include <QtQml/qqmlregistration.h>

#include <memory>

namespace veltro {

class WebPicture;

/// A picture that fills the item, with round corners: a local file, or where origin says so one of
/// the web; never the one where the other is meant. Fetching and decoding happen on threads that
/// all items share, of files the latest wish first; a new source or the item's end drops what is
/// under way. Files that were shown lately are kept. Main thread, but updatePaintNode.
class Thumbnail : public QQuickItem {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(QUrl source READ source WRITE setSource NOTIFY sourceChanged)
    Q_PROPERTY(Origin origin READ origin WRITE setOrigin NOTIFY originChanged)
    Q_PROPERTY(double radius READ radius WRITE setRadius NOTIFY radiusChanged)
    Q_PROPERTY(Status status READ status NOTIFY statusChanged)

public:
    enum class Origin { File, Web };
    Q_ENUM(Origin)
    enum class Status { Nothing, Loading, Ready, Failed };
    Q_ENUM(Status)

    explicit Thumbnail(QQuickItem *parent = nullptr);
    ~Thumbnail() override;

    [[nodiscard]] const QUrl &source() const { return m_source; }
    void setSource(const QUrl &source);
    [[nodiscard]] Origin origin() const { return m_origin; }
    void setOrigin(Origin origin);
    /// In logical pixels.
    [[nodiscard]] double radius() const { return m_radius; }
    void setRadius(double radius);
    [[nodiscard]] Status status() const { return m_status; }

Q_SIGNALS:
    void sourceChanged();
    void originChanged();
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
    [[nodiscard]] bool isAllowed() const;
    void drop();
    void decode();
    void fetch();
    void take(const QImage &picture);
    void setStatus(Status status);

    QUrl m_source;
    Origin m_origin = Origin::File;
    double m_radius = 0;
    Status m_status = Status::Nothing;
    QUrl m_shownSource;
    PictureFrame m_shownFrame;
    Origin m_shownOrigin = Origin::File;
    std::shared_ptr<Wish> m_wish;     // null when no file is under way
    WebPicture *m_transfer = nullptr; // lives on its thread, and is deleted there when dropped
    QImage m_picture;
    bool m_pictureIsNew = false;
};

}
