// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "engine/bridge/interpreter_environment.h"

#include "engine/bridge/python_symbols.h"

#include <cstdlib>
#include <dlfcn.h>
#include <filesystem>
#include <sstream>
#include <string>

namespace veltro {
namespace {

namespace fs = std::filesystem;

/// Major and minor version of the loaded library, such as "3.12".
std::string loadedVersion()
{
    const std::string text = capi::Py_GetVersion();
    const auto minorEnd = text.find_first_not_of("0123456789", text.find('.') + 1);
    return text.substr(0, minorEnd);
}

bool hasModule(const fs::path &folder, const std::string &module)
{
    for (const char *ending : {".py", ".pyc"}) {
        std::error_code error;
        const auto size = fs::file_size(folder / (module + ending), error);
        if (!error && size > 0) {
            return true;
        }
    }
    return false;
}

/// Whether the folder has what the interpreter cannot start without: everything else is either
/// compiled in or missed by an exception.
bool hasEncodings(const fs::path &folder)
{
    return hasModule(folder, "encodings/__init__") && hasModule(folder, "encodings/aliases") &&
           hasModule(folder, "encodings/utf_8");
}

bool hasStandardLibrary(const fs::path &home, const std::string &version)
{
    std::string zip = "python" + version + ".zip";
    zip.erase(zip.find('.'), 1);
    for (const char *folder : {"lib", "lib64"}) {
        std::error_code ignored;
        if (hasEncodings(home / folder / ("python" + version)) ||
            fs::exists(home / folder / zip, ignored)) {
            return true;
        }
    }
    return false;
}

/// The file that the loaded library came from, links resolved.
fs::path libraryFile()
{
    Dl_info found{};
    std::error_code unreadable;
    const bool isKnown = dladdr(capi::Py_Initialize.require(), &found) != 0 && found.dli_fname;
    return isKnown ? fs::canonical(found.dli_fname, unreadable) : fs::path();
}

void checkHome(const std::string &value, const std::string &version)
{
    // "prefix:exec_prefix"; the modules that count lie below the first.
    const fs::path home = value.substr(0, value.find(':'));
    if (!hasStandardLibrary(home, version)) {
        throw EnvironmentError("PYTHONHOME is '" + home.string() +
                               "', which has no standard library for the Python " + version +
                               " that was found.");
    }
}

/// Whether the entry holds the standard library of another version.
bool isForeign(const std::string &entry, const std::string &libraryName)
{
    const fs::path folder = fs::path(entry + "/.").lexically_normal().parent_path();
    std::error_code ignored;
    return fs::exists(folder / "encodings/__init__.py", ignored) &&
           folder.filename() != libraryName;
}

void checkSearchPath(const std::string &value, const std::string &version)
{
    const std::string libraryName = "python" + version;
    std::istringstream entries(value);
    for (std::string entry; std::getline(entries, entry, ':');) {
        if (!entry.empty() && isForeign(entry, libraryName)) {
            std::ostringstream text;
            text << "PYTHONPATH has '" << entry
                 << "', which holds the standard library of another Python than the " << version
                 << " that was found.";
            throw EnvironmentError(text.str());
        }
    }
}

}

void checkInterpreterEnvironment()
{
    const std::string version = loadedVersion();
    const char *home = std::getenv("PYTHONHOME");
    if (home && *home) {
        checkHome(home, version);
    }
    if (const char *path = std::getenv("PYTHONPATH")) {
        checkSearchPath(path, version);
    }
}

std::optional<std::wstring> programOfLibrary()
{
    const char *home = std::getenv("PYTHONHOME");
    if (home && *home) {
        return std::nullopt;
    }
    const std::string version = loadedVersion();
    for (fs::path folder = libraryFile().parent_path(); folder.has_relative_path();
         folder = folder.parent_path()) {
        if (hasStandardLibrary(folder, version)) {
            return (folder / "bin" / ("python" + version)).wstring();
        }
    }
    return std::nullopt;
}

}
