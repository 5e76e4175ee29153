// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once
#include <chrono>
#include <memory>
#include <optional>
#include <xcb/xcb.h>

namespace veltro::bench {

using Clock = std::chrono::steady_clock;

/// What the screen shows, told by its colours.
struct Sight {
    int dark = 0;  ///< pixels of letters
    int ready = 0; ///< pixels of the dot that says that the engine is ready
};

/// The X display as a user has it: sees what is painted, presses keys, turns the wheel. A
/// connection of its own, so that what is watched knows nothing of it. One thread.
class Display {
public:
    enum class Watches { paints, nothing };

    /// The display of the environment. @throws std::runtime_error
    explicit Display(Watches watches);

    /// When the next picture of a whole window was painted; nothing when the time is up first.
    /// REQUIRES: made to watch paints, as for look().
    [[nodiscard]] std::optional<Clock::time_point> nextFrame(Clock::time_point deadline);
    /// Looks at where the last frame was painted.
    [[nodiscard]] Sight look();

    /// The key of a keysym that needs no shift, alone or with Control.
    void press(xcb_keysym_t key, bool withControl = false);
    void movePointer(int x, int y);
    void turnWheel(bool down);

private:
    struct Close {
        void operator()(xcb_connection_t *connection) const { xcb_disconnect(connection); }
    };

    void watchPaints();
    [[nodiscard]] bool takeFrame(const xcb_generic_event_t &event);
    [[nodiscard]] xcb_keycode_t codeOf(xcb_keysym_t key) const;
    void fake(std::uint8_t type, std::uint8_t detail);

    const std::unique_ptr<xcb_connection_t, Close> m_connection;
    xcb_screen_t *m_screen = nullptr; // the connection's
    std::uint8_t m_damageEvent = 0;
    xcb_rectangle_t m_frame{};
};

}
