// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/player/software_picture.h"

#include <array>
#include <atomic>
#include <cstdlib>
#include <mutex>

namespace veltro::player {
namespace {

// What the library's scaler wants of an address and of a line's length.
constexpr std::size_t pictureAlignment = 64;
constexpr std::uint32_t opaqueAlpha = 0xff000000U;

QImage makePicture(QSize size)
{
    const std::size_t line = (static_cast<std::size_t>(size.width()) * 4 + pictureAlignment - 1) /
                             pictureAlignment * pictureAlignment;
    void *bytes =
        std::aligned_alloc(pictureAlignment, line * static_cast<std::size_t>(size.height()));
    if (!bytes) {
        return {};
    }
    return {static_cast<uchar *>(bytes), size.width(), size.height(), static_cast<qsizetype>(line),
            QImage::Format_RGB32,        std::free,    bytes};
}

// The library leaves the fourth byte at zero, which some ways of drawing take for transparent.
void makeOpaque(QImage &picture)
{
    for (int y = 0; y < picture.height(); ++y) {
        auto *line = reinterpret_cast<std::uint32_t *>(picture.scanLine(y)); // NOLINT(*-cast)
        for (int x = 0; x < picture.width(); ++x) {
            line[x] |= opaqueAlpha;
        }
    }
}

}

class SoftwarePicture::Drawing : public std::enable_shared_from_this<Drawing> {
public:
    Drawing(const MpvLibrary &library, mpv_handle *handle, SerialQueue &queue,
            std::shared_ptr<ListenerLink> link)
        : m_library(library), m_handle(handle), m_queue(queue), m_link(std::move(link))
    {}

    // On the queue.
    void begin();
    void end();

    // Any thread.
    void requestPicture();
    void setSize(QSize pixels);
    [[nodiscard]] QImage image() const;

private:
    void draw();
    [[nodiscard]] QSize wantedSize() const;
    void publish(QImage picture);

    const MpvLibrary &m_library;
    mpv_handle *const m_handle;
    SerialQueue &m_queue;
    const std::shared_ptr<ListenerLink> m_link;
    std::atomic<bool> m_isRequested = false;
    mpv_render_context *m_context = nullptr; // queue only
    QSize m_drawnSize;                       // queue only

    mutable std::mutex m_lock;
    QSize m_size;   // guarded by m_lock
    QImage m_image; // guarded by m_lock
};

void SoftwarePicture::Drawing::begin()
{
    static constexpr const char *type = MPV_RENDER_API_TYPE_SW;
    std::array<mpv_render_param, 2> parameters{
        mpv_render_param{MPV_RENDER_PARAM_API_TYPE, const_cast<char *>(type)}, // NOLINT(*-cast)
        mpv_render_param{MPV_RENDER_PARAM_INVALID, nullptr},
    };
    if (m_library.renderContextCreate(&m_context, m_handle, parameters.data()) < 0) {
        m_context = nullptr;
        m_link->post([](PlayerListener &to) { to.loadRefused(0, PlayerError::cannotStart); });
        return;
    }
    // Called on the player's threads until the context is freed, which comes before this object's
    // end.
    m_library.renderContextSetUpdateCallback(
        m_context, [](void *drawing) { static_cast<Drawing *>(drawing)->requestPicture(); }, this);
    m_link->post([](PlayerListener &to) { to.canDraw(); });
}

void SoftwarePicture::Drawing::end()
{
    if (m_context) {
        m_library.renderContextFree(m_context);
        m_context = nullptr;
    }
}

void SoftwarePicture::Drawing::requestPicture()
{
    if (!m_isRequested.exchange(true)) {
        m_queue.async([self = shared_from_this()] { self->draw(); });
    }
}

void SoftwarePicture::Drawing::setSize(QSize pixels)
{
    {
        const std::scoped_lock guard(m_lock);
        if (m_size == pixels) {
            return;
        }
        m_size = pixels;
    }
    requestPicture();
}

QImage SoftwarePicture::Drawing::image() const
{
    const std::scoped_lock guard(m_lock);
    return m_image;
}

QSize SoftwarePicture::Drawing::wantedSize() const
{
    const std::scoped_lock guard(m_lock);
    return m_size;
}

void SoftwarePicture::Drawing::publish(QImage picture)
{
    {
        const std::scoped_lock guard(m_lock);
        m_image = std::move(picture);
    }
    m_link->post([](PlayerListener &to) { to.pictureChanged(); });
}

void SoftwarePicture::Drawing::draw()
{
    m_isRequested = false;
    if (!m_context) {
        return;
    }
    const QSize size = wantedSize();
    const bool isNew = (m_library.renderContextUpdate(m_context) & MPV_RENDER_UPDATE_FRAME) != 0;
    if (size.isEmpty() || (!isNew && size == m_drawnSize)) {
        return;
    }
    QImage picture = makePicture(size);
    if (picture.isNull()) {
        return;
    }
    std::array<int, 2> extent{size.width(), size.height()};
    auto line = static_cast<std::size_t>(picture.bytesPerLine());
    int waits = 0;
    static constexpr const char *format = "bgr0";
    std::array<mpv_render_param, 6> parameters{
        mpv_render_param{MPV_RENDER_PARAM_SW_SIZE, extent.data()},
        mpv_render_param{MPV_RENDER_PARAM_SW_FORMAT, const_cast<char *>(format)}, // NOLINT(*-cast)
        mpv_render_param{MPV_RENDER_PARAM_SW_STRIDE, &line},
        mpv_render_param{MPV_RENDER_PARAM_SW_POINTER, picture.bits()},
        mpv_render_param{MPV_RENDER_PARAM_BLOCK_FOR_TARGET_TIME, &waits},
        mpv_render_param{MPV_RENDER_PARAM_INVALID, nullptr},
    };
    if (m_library.renderContextRender(m_context, parameters.data()) < 0) {
        return;
    }
    makeOpaque(picture);
    m_drawnSize = size;
    publish(std::move(picture));
}

SoftwarePicture::SoftwarePicture(std::shared_ptr<PlayerCore> core)
    : m_core(std::move(core))
    , m_drawing(std::make_shared<Drawing>(m_core->library(), m_core->handle(), m_core->queue(),
                                          m_core->link()))
{
    m_core->queue().async([drawing = m_drawing] { drawing->begin(); });
}

SoftwarePicture::~SoftwarePicture()
{
    m_core->queue().async([drawing = m_drawing] { drawing->end(); });
}

void SoftwarePicture::setSize(QSize pixels)
{
    m_drawing->setSize(pixels);
}

QImage SoftwarePicture::image() const
{
    return m_drawing->image();
}

}
