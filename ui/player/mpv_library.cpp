// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/player/mpv_library.h"

#include <array>
#include <dlfcn.h>
#include <mutex>

namespace veltro::player {
namespace {

// The major version belongs to the interface that the headers describe.
constexpr std::array<const char *, 2> mpvFileNames{"libmpv.so.2", "libmpv.so"};

template <typename Call>
bool find(void *handle, const char *name, Call &call)
{
    call = reinterpret_cast<Call>(dlsym(handle, name)); // NOLINT(*-reinterpret-cast)
    return call != nullptr;
}

bool findAll(void *handle, MpvLibrary &library)
{
    return find(handle, "mpv_create", library.create) &&
           find(handle, "mpv_initialize", library.initialize) &&
           find(handle, "mpv_terminate_destroy", library.terminateDestroy) &&
           find(handle, "mpv_set_option_string", library.setOptionString) &&
           find(handle, "mpv_observe_property", library.observeProperty) &&
           find(handle, "mpv_set_property_async", library.setPropertyAsync) &&
           find(handle, "mpv_command_async", library.commandAsync) &&
           find(handle, "mpv_wait_event", library.waitEvent) &&
           find(handle, "mpv_set_wakeup_callback", library.setWakeupCallback) &&
           find(handle, "mpv_render_context_create", library.renderContextCreate) &&
           find(handle, "mpv_render_context_free", library.renderContextFree) &&
           find(handle, "mpv_render_context_set_update_callback",
                library.renderContextSetUpdateCallback) &&
           find(handle, "mpv_render_context_update", library.renderContextUpdate) &&
           find(handle, "mpv_render_context_render", library.renderContextRender) &&
           find(handle, "mpv_render_context_report_swap", library.renderContextReportSwap);
}

bool load(MpvLibrary &library)
{
    for (const char *name : mpvFileNames) {
        // Never closed: threads of the library may outlive what we know of it.
        void *handle = dlopen(name, RTLD_NOW | RTLD_LOCAL);
        if (handle && findAll(handle, library)) {
            return true;
        }
    }
    return false;
}

}

const MpvLibrary *mpvLibrary()
{
    static std::mutex lock;
    static MpvLibrary library;
    static bool isLoaded = false;
    const std::scoped_lock guard(lock);
    if (!isLoaded) {
        isLoaded = load(library);
    }
    return isLoaded ? &library : nullptr;
}

}
