// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "engine/bridge/stop_process.h"

#include <cstdio>
#include <cstdlib>
#include <mutex>
#include <string>
#include <utility>

namespace veltro {
namespace {

struct StopAlert {
    std::mutex lock;
    std::function<void(std::string_view)> show; // guarded by lock
};

// Lives until the process ends: a worker thread may stop the process while main() returns.
StopAlert &stopAlert()
{
    static auto *alert = new StopAlert;
    return *alert;
}

}

void stopProcess(std::string_view message)
{
    const std::string line = std::string(message) + '\n';
    std::fwrite(line.data(), 1, line.size(), stderr);
    std::fflush(stderr);
    std::function<void(std::string_view)> show;
    {
        // Taken out, so that a failure inside the alert does not show a second one.
        const std::lock_guard guard(stopAlert().lock);
        show = std::exchange(stopAlert().show, nullptr);
    }
    if (show) {
        show(message);
    }
    std::abort();
}

void setStopAlert(std::function<void(std::string_view message)> alert)
{
    const std::lock_guard guard(stopAlert().lock);
    stopAlert().show = std::move(alert);
}

}
