// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/design/image_node.h"
#include "ui/player/opengl_picture.h"
#include "ui/player/software_picture.h"
#include "ui/player/video_player.h"

#include <QQuickWindow>
#include <QSGRendererInterface>

// What the player shows in the scene. What makes nodes runs while the scene synchronises: on the
// thread that renders, with the main thread held.
namespace veltro::player {

QSize VideoPlayer::pixelSize() const
{
    return (size() * window()->effectiveDevicePixelRatio()).toSize();
}

QSGNode *VideoPlayer::updatePaintNode(QSGNode *old, UpdatePaintNodeData *)
{
    if (!m_started || pixelSize().isEmpty()) {
        delete old;
        return nullptr;
    }
    const auto api = window()->rendererInterface()->graphicsApi();
    return api == QSGRendererInterface::OpenGL ? openGLNode(old) : softwareNode(old);
}

QSGNode *VideoPlayer::openGLNode(QSGNode *old)
{
    auto *node = static_cast<OpenGLPicture *>(old);
    if (!node) {
        node = new OpenGLPicture(m_core, window());
    }
    node->setSize(pixelSize());
    node->setRect(boundingRect());
    node->requestPicture();
    return node;
}

QSGNode *VideoPlayer::softwareNode(QSGNode *old)
{
    if (!m_software) {
        m_software = std::make_unique<SoftwarePicture>(m_core);
    }
    m_software->setSize(pixelSize());
    const QImage image = m_software->image();
    if (image.isNull()) {
        delete old;
        return nullptr;
    }
    QSGImageNode *node = imageNode(old, *window(), QSGTexture::Linear);
    node->setTexture(window()->createTextureFromImage(image, QQuickWindow::TextureIsOpaque));
    node->setRect(boundingRect());
    return node;
}

void VideoPlayer::geometryChange(const QRectF &newGeometry, const QRectF &oldGeometry)
{
    QQuickItem::geometryChange(newGeometry, oldGeometry);
    fitPicture();
    update();
}

/// A picture that would leave but a pixel or two of black beside it takes them too.
void VideoPlayer::fitPicture()
{
    if (!m_started || !window() || m_videoSize.isEmpty()) {
        return;
    }
    constexpr int littleSpare = 2;
    const QSize spare = pixelSize() - m_videoSize.scaled(pixelSize(), Qt::KeepAspectRatio);
    m_core->setFlag("keepaspect", spare.width() > littleSpare || spare.height() > littleSpare);
}

void VideoPlayer::releaseResources()
{
    // The item leaves its window; another window may draw by other means.
    m_software.reset();
}

}
