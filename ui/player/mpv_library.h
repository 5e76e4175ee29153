// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once
#include <mpv/client.h>
#include <mpv/render.h>
#include <mpv/render_gl.h>

namespace veltro::player {

/// The calls of libmpv that we make. The library and the two hundred behind it are loaded on first
/// use, so that a process that never plays anything does not pay for them.
struct MpvLibrary {
    decltype(&mpv_create) create = nullptr;
    decltype(&mpv_initialize) initialize = nullptr;
    decltype(&mpv_terminate_destroy) terminateDestroy = nullptr;
    decltype(&mpv_set_option_string) setOptionString = nullptr;
    decltype(&mpv_observe_property) observeProperty = nullptr;
    decltype(&mpv_set_property_async) setPropertyAsync = nullptr;
    decltype(&mpv_command_async) commandAsync = nullptr;
    decltype(&mpv_wait_event) waitEvent = nullptr;
    decltype(&mpv_set_wakeup_callback) setWakeupCallback = nullptr;
    decltype(&mpv_render_context_create) renderContextCreate = nullptr;
    decltype(&mpv_render_context_free) renderContextFree = nullptr;
    decltype(&mpv_render_context_set_update_callback) renderContextSetUpdateCallback = nullptr;
    decltype(&mpv_render_context_update) renderContextUpdate = nullptr;
    decltype(&mpv_render_context_render) renderContextRender = nullptr;
    decltype(&mpv_render_context_report_swap) renderContextReportSwap = nullptr;
};

/// Loads the library when called first, which takes tens of milliseconds. Any thread.
/// @returns nothing when it is not installed or lacks a call; the next call then tries again.
[[nodiscard]] const MpvLibrary *mpvLibrary();

}
