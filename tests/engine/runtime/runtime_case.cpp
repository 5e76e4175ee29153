// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
// One case of preparing the environment and starting the interpreter, for tst_environment: prints
// what was seen, a line for each fact.
#include "engine/bridge/python.h"
#include "engine/bridge/python_lock.h"
#include "engine/runtime/environment.h"
#include "engine/runtime/python_executor.h"

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <functional>
#include <future>
#include <map>
#include <string>
#include <sys/resource.h>
#include <thread>
#include <vector>

using namespace veltro;

namespace {

void tell(const std::string &line)
{
    std::puts(line.c_str());
    std::fflush(stdout);
}

std::string value(const char *name)
{
    const char *text = std::getenv(name);
    return text ? text : "(unset)";
}

void tellVariables()
{
    for (const char *name :
         {"PYTHONHOME", "PYTHONPATH", "PYTHONIOENCODING", "PYTHONUNBUFFERED",
          "PYTHONDONTWRITEBYTECODE", "TMPDIR", "SSL_CERT_FILE", "REQUESTS_CA_BUNDLE"}) {
        tell(std::string(name) + "=" + value(name));
    }
}

/// Runs a bootstrap, and tells how it ended.
void bootstrap()
{
    PythonExecutor::primary().queue().sync([] {
        try {
            PythonExecutor::runThrowing([] {
                PythonExecutor::prepareEnvironment();
                const PythonObject imported = Python().attemptImport("sys");
                PythonExecutor::releaseStartupThreadState();
            });
            tell("bootstrapped");
        } catch (const std::exception &error) {
            tell(std::string("failed: ") + error.what());
        }
    });
}

void tellJobs()
{
    for (PythonExecutor *executor : {&PythonExecutor::primary(), &PythonExecutor::probe()}) {
        std::promise<std::string> done;
        executor->submit([&done] { done.set_value(Python().version()); });
        const std::string version = done.get_future().get();
        const bool held = executor->queue().sync([] { return python_lock::isHeld(); });
        tell(executor->queue().label() + " " + version.substr(0, version.find('.', 2)) +
             (held ? " keeps the lock" : ""));
    }
}

void startAndTell()
{
    setInterpreterEnvironment();
    bootstrap();
    tellVariables();
    PythonExecutor::withGIL([] {
        std::string path = "sys.path";
        for (const PythonObject &entry : Python().import("sys").attr("path")) {
            path.append(" ").append(entry.description());
        }
        tell(path);
    });
    tellJobs();
}

void prepareTwice()
{
    bootstrap();
    ::setenv("PYTHONPATH", "later", 1);
    ::setenv("TMPDIR", "later", 1);
    bootstrap();
    setInterpreterEnvironment();
    tell(value("PYTHONPATH") + " " + value("TMPDIR"));
}

void prepareFromManyThreads()
{
    std::vector<std::thread> threads;
    threads.reserve(8);
    for (int i = 0; i < 8; ++i) {
        threads.emplace_back([] {
            PythonExecutor::prepareEnvironment();
            PythonExecutor::releaseStartupThreadState();
        });
    }
    for (std::thread &thread : threads) {
        thread.join();
    }
    tellJobs();
}

void retryAfterAWrongHome()
{
    ::setenv("PYTHONHOME", "/nowhere", 1);
    bootstrap();
    bootstrap();
    ::unsetenv("PYTHONHOME");
    bootstrap();
    tellJobs();
}

void writeAHostileFileName()
{
    bootstrap();
    PythonExecutor::withGIL([] {
        const std::string name = value("TMPDIR") + "/d\u00e9j\u00e0 \u29f8 \uff1a \uff1f.mp4";
        Python().attr("open")(name, "w").attr("close")();
        tell(std::filesystem::exists(name) ? "written" : "not written");
    });
}

/// Returns from main() while both queues run jobs that never end.
void leaveWhileJobsRun()
{
    bootstrap();
    std::promise<void> first;
    std::promise<void> second;
    const auto loop = [](std::promise<void> &running) {
        const PythonFunction tellRunning([&running, told = false](const PythonArguments &) mutable {
            if (!std::exchange(told, true)) {
                running.set_value();
            }
            return PythonObject::none();
        });
        const PythonObject names = Python().attr("dict")();
        names.setItem("tell", tellRunning);
        Python().attr("exec")("while True: tell()", names);
    };
    PythonExecutor::primary().submit([&] { loop(first); });
    PythonExecutor::probe().submit([&] { loop(second); });
    first.get_future().wait();
    second.get_future().wait();
    tell("leaving");
    // The jobs go on with these until the process is gone.
    static auto kept = std::pair(std::move(first), std::move(second));
}

const std::map<std::string, std::function<void()>> &cases()
{
    static const std::map<std::string, std::function<void()>> all{
        {"bootstrap", bootstrap},
        {"start", startAndTell},
        {"prepare-twice", prepareTwice},
        {"prepare-from-many-threads", prepareFromManyThreads},
        {"retry-after-a-wrong-home", retryAfterAWrongHome},
        {"write-a-hostile-file-name", writeAHostileFileName},
        {"leave-while-jobs-run", leaveWhileJobsRun},
    };
    return all;
}

}

int main(int argc, char **argv)
{
    const rlimit noCoreFile{};
    setrlimit(RLIMIT_CORE, &noCoreFile);
    const auto found = cases().find(argc > 1 ? argv[1] : "");
    if (found == cases().end()) {
        return 2;
    }
    found->second();
    return 0;
}
