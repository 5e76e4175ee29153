// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "benchmarks/window/display.h"

#include <cstdlib>
#include <poll.h>
#include <span>
#include <stdexcept>
#include <xcb/damage.h>
#include <xcb/xtest.h>

namespace veltro::bench {
namespace {

// A frame covers its window; smaller than this is the window manager's decoration.
constexpr int smallestFrameWidth = 900;
constexpr int smallestFrameHeight = 600;
constexpr xcb_keysym_t controlKey = 0xFFE3;
constexpr std::uint8_t wheelUp = 4;
constexpr std::uint8_t wheelDown = 5;

struct Free {
    void operator()(void *memory) const { std::free(memory); }
};
template <typename Reply>
using Owned = std::unique_ptr<Reply, Free>;

struct Pixel {
    std::uint8_t blue, green, red, unused;
};

// Neither the caret nor the field's placeholder is.
bool isDark(const Pixel &pixel)
{
    constexpr int brightest = 0x70;
    return pixel.red < brightest && pixel.green < brightest && pixel.blue < brightest;
}

bool isReadyDot(const Pixel &pixel)
{
    return pixel.red == 0x14 && pixel.green == 0x7F && pixel.blue == 0x51;
}

}

Display::Display(Watches watches) : m_connection(xcb_connect(nullptr, nullptr))
{
    if (xcb_connection_has_error(m_connection.get()) != 0) {
        throw std::runtime_error("there is no display");
    }
    m_screen = xcb_setup_roots_iterator(xcb_get_setup(m_connection.get())).data;
    if (watches == Watches::paints) {
        watchPaints();
    }
}

void Display::watchPaints()
{
    xcb_connection_t *const connection = m_connection.get();
    const auto *extension = xcb_get_extension_data(connection, &xcb_damage_id);
    if (extension == nullptr || extension->present == 0) {
        throw std::runtime_error("the display does not tell what is painted");
    }
    m_damageEvent = extension->first_event + XCB_DAMAGE_NOTIFY;
    const Owned<xcb_damage_query_version_reply_t> version(xcb_damage_query_version_reply(
        connection, xcb_damage_query_version(connection, 1, 1), nullptr));
    xcb_damage_create(connection, xcb_generate_id(connection), m_screen->root,
                      XCB_DAMAGE_REPORT_LEVEL_RAW_RECTANGLES);
    xcb_flush(connection);
}

std::optional<Clock::time_point> Display::nextFrame(Clock::time_point deadline)
{
    pollfd descriptor{xcb_get_file_descriptor(m_connection.get()), POLLIN, 0};
    while (true) {
        while (const Owned<xcb_generic_event_t> event{xcb_poll_for_event(m_connection.get())}) {
            if (takeFrame(*event)) {
                return Clock::now();
            }
        }
        const auto left = std::chrono::ceil<std::chrono::milliseconds>(deadline - Clock::now());
        if (left.count() <= 0 || xcb_connection_has_error(m_connection.get()) != 0) {
            return std::nullopt;
        }
        poll(&descriptor, 1, static_cast<int>(left.count()));
    }
}

bool Display::takeFrame(const xcb_generic_event_t &event)
{
    if ((event.response_type & 0x7F) != m_damageEvent) {
        return false;
    }
    const auto &damage = reinterpret_cast<const xcb_damage_notify_event_t &>(event);
    if (damage.area.width < smallestFrameWidth || damage.area.height < smallestFrameHeight) {
        return false;
    }
    m_frame = damage.area;
    return true;
}

Sight Display::look()
{
    const Owned<xcb_get_image_reply_t> image(xcb_get_image_reply(
        m_connection.get(),
        xcb_get_image(m_connection.get(), XCB_IMAGE_FORMAT_Z_PIXMAP, m_screen->root, m_frame.x,
                      m_frame.y, m_frame.width, m_frame.height, ~0U),
        nullptr));
    Sight sight;
    if (!image || image->depth != 24) {
        throw std::runtime_error("the display has not the colours that are looked for");
    }
    const auto *pixels = reinterpret_cast<const Pixel *>(xcb_get_image_data(image.get()));
    const auto count =
        static_cast<std::size_t>(xcb_get_image_data_length(image.get())) / sizeof(Pixel);
    for (const Pixel &pixel : std::span(pixels, count)) {
        sight.dark += isDark(pixel) ? 1 : 0;
        sight.ready += isReadyDot(pixel) ? 1 : 0;
    }
    return sight;
}

xcb_keycode_t Display::codeOf(xcb_keysym_t key) const
{
    const xcb_setup_t *const setup = xcb_get_setup(m_connection.get());
    const auto first = setup->min_keycode;
    const auto count = static_cast<std::uint8_t>(setup->max_keycode - first + 1);
    const Owned<xcb_get_keyboard_mapping_reply_t> mapping(xcb_get_keyboard_mapping_reply(
        m_connection.get(), xcb_get_keyboard_mapping(m_connection.get(), first, count), nullptr));
    if (mapping) {
        const auto *keys = xcb_get_keyboard_mapping_keysyms(mapping.get());
        for (int code = 0; code < count; ++code) {
            if (keys[std::size_t(code) * mapping->keysyms_per_keycode] == key) {
                return static_cast<xcb_keycode_t>(first + code);
            }
        }
    }
    throw std::runtime_error("the keyboard has not the key that is to be pressed");
}

void Display::fake(std::uint8_t type, std::uint8_t detail)
{
    xcb_test_fake_input(m_connection.get(), type, detail, XCB_CURRENT_TIME, m_screen->root, 0, 0,
                        0);
}

void Display::press(xcb_keysym_t key, bool withControl)
{
    const xcb_keycode_t code = codeOf(key);
    const xcb_keycode_t control = codeOf(controlKey);
    if (withControl) {
        fake(XCB_KEY_PRESS, control);
    }
    fake(XCB_KEY_PRESS, code);
    fake(XCB_KEY_RELEASE, code);
    if (withControl) {
        fake(XCB_KEY_RELEASE, control);
    }
    xcb_flush(m_connection.get());
}

void Display::movePointer(int x, int y)
{
    xcb_warp_pointer(m_connection.get(), XCB_NONE, m_screen->root, 0, 0, 0, 0,
                     static_cast<std::int16_t>(x), static_cast<std::int16_t>(y));
    xcb_flush(m_connection.get());
}

void Display::turnWheel(bool down)
{
    const std::uint8_t button = down ? wheelDown : wheelUp;
    fake(XCB_BUTTON_PRESS, button);
    fake(XCB_BUTTON_RELEASE, button);
    xcb_flush(m_connection.get());
}

}
