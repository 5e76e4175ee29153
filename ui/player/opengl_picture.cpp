// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/player/opengl_picture.h"

#include <QGuiApplication>
#include <QOpenGLContext>
#include <QOpenGLFramebufferObject>
#include <QOpenGLFunctions>
#include <QQuickOpenGLUtils>
#include <QQuickWindow>

#include <array>
#include <utility>

namespace veltro::player {
namespace {

// A player draws in one place only: an item that has come from another window waits, frame by
// frame, until the picture there is gone.
constexpr int mostAttempts = 120;

void *openGLCall(void *, const char *name)
{
    QOpenGLContext *context = QOpenGLContext::currentContext();
    return context ? reinterpret_cast<void *>(context->getProcAddress(name)) : nullptr; // NOLINT
}

// Lets the decoder's own pictures reach OpenGL without a copy, where the driver can.
mpv_render_param displayParameter()
{
#if QT_CONFIG(xcb)
    if (auto *x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>()) {
        return {MPV_RENDER_PARAM_X11_DISPLAY, x11->display()};
    }
#endif
    return {MPV_RENDER_PARAM_INVALID, nullptr};
}

}

OpenGLPicture::OpenGLPicture(std::shared_ptr<PlayerCore> core, QQuickWindow *window)
    : m_core(std::move(core)), m_window(window)
{
    setFiltering(QSGTexture::Linear);
    setOwnsTexture(true);
    connect(
        window, &QQuickWindow::beforeRendering, this, [this] { prepare(); }, Qt::DirectConnection);
}

OpenGLPicture::~OpenGLPicture()
{
    if (m_context) {
        m_core->library().renderContextFree(m_context);
    }
}

void OpenGLPicture::prepare()
{
    if (m_hasFailed || !m_isRequested || !m_target) {
        return;
    }
    m_isRequested = false;
    m_window->beginExternalCommands();
    QQuickOpenGLUtils::resetOpenGLState(); // the player takes the state for a new context's
    if (m_context || begin()) {
        draw();
    }
    QQuickOpenGLUtils::resetOpenGLState();
    m_window->endExternalCommands();
}

bool OpenGLPicture::begin()
{
    mpv_opengl_init_params calls{openGLCall, nullptr};
    static constexpr const char *type = MPV_RENDER_API_TYPE_OPENGL;
    std::array<mpv_render_param, 4> parameters{
        mpv_render_param{MPV_RENDER_PARAM_API_TYPE, const_cast<char *>(type)}, // NOLINT(*-cast)
        mpv_render_param{MPV_RENDER_PARAM_OPENGL_INIT_PARAMS, &calls},
        displayParameter(),
        mpv_render_param{MPV_RENDER_PARAM_INVALID, nullptr},
    };
    const MpvLibrary &library = m_core->library();
    if (library.renderContextCreate(&m_context, m_core->handle(), parameters.data()) < 0) {
        m_context = nullptr;
        m_hasFailed = ++m_attempts == mostAttempts;
        m_core->link()->post([hasFailed = m_hasFailed](PlayerListener &to) {
            hasFailed ? to.loadRefused(0, PlayerError::cannotStart) : to.pictureChanged();
        });
        return false;
    }
    // The link outlives the context, which this node frees while it holds the core.
    library.renderContextSetUpdateCallback(
        m_context,
        [](void *link) {
            static_cast<ListenerLink *>(link)->post(
                [](PlayerListener &to) { to.pictureChanged(); });
        },
        m_core->link().get());
    m_core->link()->post([](PlayerListener &to) { to.canDraw(); });
    return true;
}

void OpenGLPicture::setSize(QSize pixels)
{
    if (m_target && m_target->size() == pixels) {
        return;
    }
    auto target = std::make_unique<QOpenGLFramebufferObject>(pixels);
    target->bind();
    QOpenGLFunctions *gl = QOpenGLContext::currentContext()->functions();
    gl->glClearColor(0, 0, 0, 1);
    gl->glClear(GL_COLOR_BUFFER_BIT);
    QOpenGLFramebufferObject::bindDefault();
    // The node lets go of the old target's texture before that target goes.
    setTexture(QNativeInterface::QSGOpenGLTexture::fromNative(target->texture(), m_window, pixels));
    m_target = std::move(target);
    m_isRequested = true;
}

void OpenGLPicture::draw()
{
    m_core->library().renderContextUpdate(m_context);
    mpv_opengl_fbo target{static_cast<int>(m_target->handle()), m_target->width(),
                          m_target->height(), 0};
    // A texture's first line is its top here.
    int flips = 0;
    int waits = 0;
    std::array<mpv_render_param, 4> parameters{
        mpv_render_param{MPV_RENDER_PARAM_OPENGL_FBO, &target},
        mpv_render_param{MPV_RENDER_PARAM_FLIP_Y, &flips},
        mpv_render_param{MPV_RENDER_PARAM_BLOCK_FOR_TARGET_TIME, &waits},
        mpv_render_param{MPV_RENDER_PARAM_INVALID, nullptr},
    };
    m_core->library().renderContextRender(m_context, parameters.data());
    markDirty(DirtyMaterial);
}

}
