// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "engine/service/bootstrap.h"

#include "engine/bridge/python.h"
#include "engine/runtime/python_executor.h"
#include "engine/service/engine_error.h"
#include "engine/service/engine_messages.h"
#include "engine/service/engine_state.h"
#include "platform/bundle.h"

#include <string>

namespace veltro {
namespace {

/// Gives up the start-up thread's interpreter lock when the scope ends.
struct StartupLockRelease {
    StartupLockRelease() = default;
    ~StartupLockRelease() { PythonExecutor::releaseStartupThreadState(); }
    StartupLockRelease(const StartupLockRelease &) = delete;
    StartupLockRelease &operator=(const StartupLockRelease &) = delete;
};

/// The bundle's folder comes first, then yt-dlp's, then what the environment put there.
void extendSearchPath(const std::string &bundle)
{
    const PythonObject path =
        Python().attemptImport("sys").throwing().attr("path").throwing().attr("insert");
    path.throwing().call({0, bundle + "/yt-dlp"});
    path.throwing().call({0, bundle});
}

void importModules(EngineState &state)
{
    try {
        extendSearchPath(Bundle::main().root().string());
        const PythonObject support = Python().attemptImport("python_init");
        const PythonObject ytDlp = Python().attemptImport("yt_dlp");
        support.throwing().attr("apply_after_import").throwing().call({});
        state.setBootstrapped(ytDlp);
    } catch (const PythonError &error) {
        throw EngineError::bootstrapFailed(cleanEngineMessage(error));
    }
}

}

void bootstrapEngine(EngineState &state)
{
    PythonExecutor::prepareEnvironment();
    const StartupLockRelease release;
    importModules(state);
}

}
