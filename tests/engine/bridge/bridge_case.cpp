// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
// One case of loading, starting or stopping the interpreter, for tst_interpreters: prints what
// was seen, a line for each fact.
#include "engine/bridge/python.h"
#include "engine/bridge/python_library.h"
#include "engine/bridge/python_lock.h"
#include "engine/bridge/stop_process.h"

#include <csignal>
#include <cstdio>
#include <dlfcn.h>
#include <functional>
#include <map>
#include <string>
#include <sys/resource.h>

using namespace veltro;

namespace {

void tell(const std::string &line)
{
    std::puts(line.c_str());
    std::fflush(stdout);
}

void startTwiceAndTell()
{
    tell(Python().version());
    tell(Python().version());
}

void tellWhatIsThere()
{
    try {
        PythonLibrary::load();
        tell("loaded");
    } catch (const PythonLibrary::Error &error) {
        tell(error.what());
    }
}

void tellEncodings()
{
    const PythonObject sys = Python().import("sys");
    tell(sys.attr("getfilesystemencoding")().description());
    tell(Python().import("locale").attr("getpreferredencoding")(false).description());
}

void handler(int) {}

void tellSignals()
{
    struct sigaction own {};
    own.sa_handler = handler;
    own.sa_flags = SA_RESTART;
    sigaction(SIGINT, &own, nullptr);
    std::signal(SIGPIPE, SIG_DFL);
    Python();
    struct sigaction now {};
    sigaction(SIGINT, nullptr, &now);
    tell(now.sa_handler == handler && now.sa_flags & SA_RESTART ? "SIGINT kept" : "SIGINT changed");
    sigaction(SIGPIPE, nullptr, &now);
    tell(now.sa_handler == SIG_DFL ? "SIGPIPE kept" : "SIGPIPE changed");
}

void dropWithoutLock()
{
    {
        const PythonObject object = Python().attr("object")();
        tell("made");
        python_lock::saveThread();
    }
    tell("survived");
}

/// What a library of before version 3 can do here.
void useLegacyNames()
{
    Python();
    const PythonObject text = "text";
    tell(*text.to<std::string>() + std::to_string(*PythonObject(-7).to<std::int64_t>()) +
         std::to_string(*PythonObject(7U).to<std::uint64_t>()) + PythonBytes("bytes").bytes() +
         text.attr("upper")().description());
    (void)PythonObject(PythonFunction([](const PythonArguments &) { return 0; }));
    tell("survived");
}

const std::map<std::string, std::function<void()>> &cases()
{
    static const std::map<std::string, std::function<void()>> all{
        {"version", startTwiceAndTell},
        {"library", tellWhatIsThere},
        {"encodings", tellEncodings},
        {"prefix", [] { tell(Python().import("sys").attr("prefix").description()); }},
        {"signals", tellSignals},
        {"drop-without-lock", dropWithoutLock},
        {"legacy", useLegacyNames},
        {"stop-builtin", [] { (void)Python().attr("nope"); }},
        {"stop-member", [] { (void)PythonObject(1).attr("nope"); }},
        {"stop-set-member", [] { PythonObject(1).setAttr("nope", 2); }},
        {"stop-element", [] { (void)PythonObject("text")[9]; }},
        {"stop-call", [] { (void)PythonObject(5)(); }},
        {"stop-import", [] { (void)Python().import("no_such_module"); }},
        {"stop-iteration", [] { (void)PythonObject(5).begin(); }},
        {"stop-with-alert",
         [] {
             setStopAlert([](std::string_view message) {
                 tell("alert: " + std::string(message));
                 stopProcess("again");
             });
             (void)Python().attr("nope");
         }},
    };
    return all;
}

}

int main(int argc, char **argv)
{
    const rlimit noCoreFile{};
    setrlimit(RLIMIT_CORE, &noCoreFile);
    const std::string name = argc > 1 ? argv[1] : "";
    if (argc > 2 && !dlopen(argv[2], RTLD_LAZY | RTLD_GLOBAL)) {
        return 2;
    }
    const auto found = cases().find(name);
    if (found == cases().end()) {
        return 2;
    }
    if (name.starts_with("stop")) {
        Python();
    }
    try {
        found->second();
    } catch (const std::exception &error) {
        tell(std::string("error: ") + error.what());
        return 1;
    }
    return 0;
}
