// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "engine/runtime/environment.h"

#include "platform/bundle.h"

#include <cstdlib>
#include <filesystem>
#include <mutex>
#include <string>
#include <unistd.h>

namespace veltro {
namespace {

namespace fs = std::filesystem;

void set(const char *name, const std::string &value)
{
    ::setenv(name, value.c_str(), 1);
}

bool isThere(const fs::path &path)
{
    std::error_code ignored;
    return fs::exists(path, ignored);
}

bool isUsableFolder(const fs::path &path)
{
    std::error_code ignored;
    return path.is_absolute() && fs::is_directory(path, ignored) &&
           ::access(path.c_str(), W_OK | X_OK) == 0;
}

/// The user's own choice where it can be used, else the system's folder. Not the run-time folder of
/// the session: it lies in memory and is far smaller than a video.
std::string temporaryFolder()
{
    const char *chosen = std::getenv("TMPDIR");
    if (chosen && isUsableFolder(chosen)) {
        return chosen;
    }
    return isUsableFolder("/tmp") ? "/tmp" : "/var/tmp";
}

void setModulePaths(const Bundle &bundle)
{
    const fs::path home = bundle.frameworkHome();
    if (!isThere(home)) {
        return;
    }
    const fs::path standardLibrary = home / "lib/python3.12";
    set("PYTHONHOME", home.string());
    set("PYTHONPATH", bundle.resources().string() + ':' + standardLibrary.string() + ':' +
                          (standardLibrary / "lib-dynload").string() + ':' +
                          (bundle.resources() / "yt-dlp").string());
}

void setCertificates(const Bundle &bundle)
{
    const fs::path certificates = bundle.resources() / "cacert.pem";
    if (isThere(certificates)) {
        set("SSL_CERT_FILE", certificates.string());
        set("REQUESTS_CA_BUNDLE", certificates.string());
    }
}

}

void setInterpreterEnvironment()
{
    static std::once_flag once;
    std::call_once(once, [] {
        const Bundle &bundle = Bundle::main();
        setModulePaths(bundle);
        set("PYTHONIOENCODING", "UTF-8");
        set("PYTHONUNBUFFERED", "1");
        set("PYTHONDONTWRITEBYTECODE", "1");
        set("TMPDIR", temporaryFolder());
        setCertificates(bundle);
    });
}

}
