// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "engine/bridge/python_library.h"

#include "engine/bridge/stop_process.h"
#include "platform/bundle.h"

#include <array>
#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <dlfcn.h>
#include <filesystem>
#include <mutex>
#include <string>
#include <vector>

namespace veltro {
namespace {

std::mutex loadLock;
std::atomic<void *> libraryHandle;
std::atomic<bool> legacyLibrary;

void tellLoader(const std::string &line)
{
    if (std::getenv("PYTHON_LOADER_LOGGING")) {
        const std::string whole = line + '\n';
        std::fwrite(whole.data(), 1, whole.size(), stderr);
    }
}

const char *variable(const char *name)
{
    const char *value = std::getenv(name);
    return value && *value ? value : nullptr;
}

void *open(const std::string &path)
{
    tellLoader("Trying to load library at '" + path + "'...");
    // Global, since every extension module expects the interpreter's symbols in the process.
    void *handle = dlopen(path.c_str(), RTLD_LAZY | RTLD_GLOBAL);
    if (handle) {
        tellLoader("Library at '" + path + "' was successfully loaded.");
    } else {
        tellLoader("Failed to load library at '" + path + "'.");
        tellLoader(std::string("Reason for failure: ") + dlerror());
    }
    return handle;
}

std::vector<std::string> versions()
{
    if (const char *only = variable("PYTHON_VERSION")) {
        return {only};
    }
    std::vector<std::string> result;
    for (const char *major : {"3.", "2."}) {
        for (int minor = 30; minor >= 0; --minor) {
            result.push_back(major + std::to_string(minor));
        }
    }
    return result;
}

std::vector<std::string> searchFolders()
{
    std::vector<std::string> result;
    const auto home = Bundle::main().frameworkHome();
    std::error_code ignored;
    if (std::filesystem::exists(home, ignored)) {
        // PYTHONHOME points into this folder, so its own library is the one that fits.
        result.push_back((home / "lib/").string());
    }
    result.insert(result.end(), {
        "", // wherever the loader looks by itself
#if defined(__aarch64__)
            "/usr/lib/aarch64-linux-gnu/",
#else
                   "/usr/lib/x86_64-linux-gnu/",
#endif
            "/usr/lib64/", "/usr/lib/", "/usr/local/lib64/", "/usr/local/lib/"
    });
    return result;
}

void *search()
{
    static constexpr std::array patterns{"libpython:.so.1.0", "libpython:.so"};
    const std::vector<std::string> names = versions();
    for (const std::string &folder : searchFolders()) {
        for (const std::string &version : names) {
            for (std::string name : patterns) {
                name.replace(name.find(':'), 1, version);
                if (void *handle = open(folder + name)) {
                    return handle;
                }
            }
        }
    }
    return nullptr;
}

void *find()
{
    if (dlsym(RTLD_DEFAULT, "Py_Initialize")) {
        return dlopen(nullptr, RTLD_LAZY);
    }
    const char *path = variable("PYTHON_LIBRARY");
    return path ? open(path) : search();
}

void loadOrStop()
{
    try {
        PythonLibrary::load();
    } catch (const PythonLibrary::Error &error) {
        stopProcess(error.what());
    }
}

}

const char *PythonLibrary::Error::what() const noexcept
{
    switch (kind) {
    case Kind::pythonLibraryNotFound:
        return "Python library not found. Set the PYTHON_LIBRARY environment variable with the "
               "path to a Python library.";
    }
    return "";
}

void PythonLibrary::load()
{
    if (libraryHandle) {
        return;
    }
    const std::lock_guard guard(loadLock);
    if (libraryHandle) {
        return;
    }
    void *handle = find();
    if (!handle || !dlsym(handle, "Py_Initialize")) {
        throw Error{};
    }
    if (dlsym(handle, "PyString_AsString")) {
        tellLoader("Loaded legacy Python library, using legacy symbols...");
        legacyLibrary = true;
    }
    libraryHandle = handle;
}

void *PythonLibrary::symbol(const char *name)
{
    loadOrStop();
    tellLoader(std::string("Loading symbol '") + name + "' from the Python library...");
    return dlsym(libraryHandle, name);
}

bool PythonLibrary::isLegacy()
{
    loadOrStop();
    return legacyLibrary;
}

}
