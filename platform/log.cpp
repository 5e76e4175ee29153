// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/log.h"

#include <algorithm>
#include <cstdio>
#include <mutex>
#include <string>
#include <utility>

namespace veltro {
namespace {

struct Log {
    std::mutex lock;
    std::function<void(std::string_view)> sink; // guarded by lock
};

// Lives until the process ends: worker threads may log while main() returns.
Log &processLog()
{
    static auto *log = new Log;
    return *log;
}

std::string_view prefix(LogTag tag)
{
    switch (tag) {
    case LogTag::engine:
        return "[veltro] ";
    case LogTag::ffmpeg:
        return "[ffmpeg] ";
    }
    return {};
}

}

void logLine(LogTag tag, std::string_view text)
{
    std::string line(prefix(tag));
    line.append(text);
    std::replace_if(
        line.begin(), line.end(),
        [](char c) { return static_cast<unsigned char>(c) < 0x20 || c == 0x7f; }, ' ');
    Log &log = processLog();
    const std::lock_guard guard(log.lock);
    if (log.sink) {
        log.sink(line);
        return;
    }
    line.push_back('\n');
    std::fwrite(line.data(), 1, line.size(), stderr);
    std::fflush(stderr);
}

void setLogSink(std::function<void(std::string_view line)> sink)
{
    Log &log = processLog();
    const std::lock_guard guard(log.lock);
    log.sink = std::move(sink);
}

}
