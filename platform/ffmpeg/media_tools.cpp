// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/ffmpeg/media_tools.h"

#include "platform/bundle.h"
#include "platform/ffmpeg/media_module.h"

#include <dlfcn.h>
#include <mutex>

namespace veltro::ffmpeg {
namespace {

[[noreturn]] void refuseModule(const char *whenUnknown)
{
    const char *reason = dlerror();
    throw MediaToolsMissing(reason ? reason : whenUnknown);
}

// The handle is dropped on purpose: threads of the libraries may run until the process ends.
MediaTools &loadModule(const std::filesystem::path &file)
{
    void *module = dlopen(file.c_str(), RTLD_NOW | RTLD_LOCAL);
    if (!module) {
        refuseModule("the media module cannot be loaded");
    }
    void *entry = dlsym(module, mediaModuleEntry);
    if (!entry) {
        refuseModule("the media module has no entry");
    }
    return *reinterpret_cast<decltype(&veltroMediaTools)>(entry)();
}

}

MediaTools &mediaTools()
{
    static std::mutex lock;
    static MediaTools *loaded = nullptr; // guarded by lock
    const std::lock_guard guard(lock);
    if (!loaded) {
        loaded = &loadModule(Bundle::main().plugIns() / mediaModuleFile);
    }
    return *loaded;
}

}
