// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once
#include "ui/player/player_core.h"

#include <QObject>
#include <QSGSimpleTextureNode>
#include <QSize>

#include <memory>

class QOpenGLFramebufferObject;
class QQuickWindow;

namespace veltro::player {

/// Draws a player's pictures into a texture of the window's scene. A node of the scene graph: it
/// lives on the thread that renders, where the window's context is current for its whole life.
class OpenGLPicture : public QObject, public QSGSimpleTextureNode {
public:
    OpenGLPicture(std::shared_ptr<PlayerCore> core, QQuickWindow *window);
    ~OpenGLPicture() override;

    [[nodiscard]] const PlayerCore *core() const { return m_core.get(); }
    /// In pixels of the screen, not empty. While the scene synchronises; before the node is drawn.
    void setSize(QSize pixels);
    /// Draws before the next frame. While the scene synchronises.
    void requestPicture() { m_isRequested = true; }

private:
    void prepare();
    [[nodiscard]] bool begin();
    void draw();

    // Last to go, after the context that draws from it.
    const std::shared_ptr<PlayerCore> m_core;
    QQuickWindow *const m_window;
    mpv_render_context *m_context = nullptr;
    std::unique_ptr<QOpenGLFramebufferObject> m_target;
    bool m_isRequested = false;
    int m_attempts = 0; // to begin, without success
    bool m_hasFailed = false;
};

}
