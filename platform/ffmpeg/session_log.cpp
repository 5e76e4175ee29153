// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/ffmpeg/session_log.h"

#include "platform/ffmpeg/libav.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <exception>
#include <utility>
#include <vector>

namespace veltro::ffmpeg {
namespace {

struct LiveLogs {
    std::mutex lock; // taken before a log's own lock
    std::vector<SessionLog *> logs;
};

// Lives until the process ends: a worker thread of the libraries may log while main() returns.
LiveLogs &liveLogs()
{
    static auto *live = new LiveLogs;
    return *live;
}

// A pointer in the space that the loader keeps for late modules: read without a call.
[[gnu::tls_model("initial-exec")]] thread_local SessionLog *boundLog = nullptr;

const void *opaqueOf(void *context, const AVClass &type)
{
    if (&type == avformat_get_class()) {
        return static_cast<AVFormatContext *>(context)->opaque;
    }
    if (&type == avcodec_get_class()) {
        return static_cast<AVCodecContext *>(context)->opaque;
    }
    if (&type == avfilter_get_class()) {
        const AVFilterGraph *graph = static_cast<AVFilterContext *>(context)->graph;
        return graph ? graph->opaque : nullptr;
    }
    if (type.class_name && std::string_view(type.class_name) == "AVFilterGraph") {
        return static_cast<AVFilterGraph *>(context)->opaque;
    }
    return nullptr;
}

void *parentOf(void *context, const AVClass &type)
{
    if (type.parent_log_context_offset == 0) {
        return nullptr;
    }
    return *reinterpret_cast<void **>(static_cast<char *>(context) +
                                      type.parent_log_context_offset);
}

// REQUIRES: the caller holds live.lock. Nothing that a context names is followed before it has
// been found among the logs alive.
SessionLog *ownerOf(void *context, const LiveLogs &live)
{
    constexpr int deepest = 8;
    for (int depth = 0; context && depth < deepest; ++depth) {
        const AVClass *type = *static_cast<const AVClass **>(context);
        if (!type) {
            break;
        }
        const void *opaque = opaqueOf(context, *type);
        const auto found = std::find(live.logs.begin(), live.logs.end(), opaque);
        if (found != live.logs.end()) {
            return *found;
        }
        context = parentOf(context, *type);
    }
    return live.logs.size() == 1 ? live.logs.front() : nullptr;
}

bool isStrayControl(char c)
{
    return (c >= 0 && c < 0x08) || (c > 0x0d && c < 0x20);
}

constexpr std::array<std::pair<std::string_view, int>, 9> levelNames{{
    {"quiet", AV_LOG_QUIET},
    {"panic", AV_LOG_PANIC},
    {"fatal", AV_LOG_FATAL},
    {"error", AV_LOG_ERROR},
    {"warning", AV_LOG_WARNING},
    {"info", AV_LOG_INFO},
    {"verbose", AV_LOG_VERBOSE},
    {"debug", AV_LOG_DEBUG},
    {"trace", AV_LOG_TRACE},
}};

}

SessionLog::SessionLog() : m_level(AV_LOG_INFO)
{
    LiveLogs &live = liveLogs();
    {
        const std::lock_guard guard(live.lock);
        live.logs.push_back(this);
    }
    takeCallback();
}

void SessionLog::takeCallback()
{
    av_log_set_callback(&SessionLog::receive);
}

SessionLog::~SessionLog()
{
    LiveLogs &live = liveLogs();
    const std::lock_guard guard(live.lock);
    std::erase(live.logs, this);
}

void SessionLog::setLevel(int level)
{
    const std::lock_guard guard(m_lock);
    m_level = level;
}

int SessionLog::level() const
{
    const std::lock_guard guard(m_lock);
    return m_level;
}

void SessionLog::write(int level, std::string_view text)
{
    const std::lock_guard guard(m_lock);
    if (level <= m_level) {
        appendLocked(text);
    }
}

void SessionLog::append(std::string_view text)
{
    const std::lock_guard guard(m_lock);
    appendLocked(text);
}

std::string SessionLog::text() const
{
    const std::lock_guard guard(m_lock);
    return m_text;
}

// Called by the libraries, which are C: nothing may be thrown through them.
void SessionLog::receive(void *context, int level, const char *format, std::va_list arguments)
try {
    if (boundLog) {
        boundLog->format(context, level, format, arguments);
        return;
    }
    LiveLogs &live = liveLogs();
    const std::lock_guard guard(live.lock); // held until the line is in: the log cannot go away
    if (SessionLog *owner = ownerOf(context, live)) {
        owner->format(context, level, format, arguments);
    }
} catch (const std::exception &) { // out of memory: the line is lost, the command goes on
}

void SessionLog::format(void *context, int level, const char *format, std::va_list arguments)
{
    // Bits above the lowest eight carry a colour.
    const int plainLevel = level >= 0 ? level & 0xff : level;
    const std::lock_guard guard(m_lock);
    if (plainLevel > m_level) {
        return;
    }
    std::array<char, 1024> line{};
    av_log_format_line2(context, plainLevel, format, arguments, line.data(),
                        static_cast<int>(line.size()), &m_printPrefix);
    std::string text(line.data());
    std::replace_if(text.begin(), text.end(), isStrayControl, '?');
    appendLocked(text);
}

void SessionLog::appendLocked(std::string_view text)
{
    m_text.append(text);
    if (m_text.size() <= capacity) {
        return;
    }
    // Make room for a good while, so that a flood of lines does not move the text each time.
    const std::size_t surplus = m_text.size() - capacity + capacity / 8;
    const std::size_t lineEnd = m_text.find('\n', surplus);
    m_text.erase(0, lineEnd == std::string::npos ? surplus : lineEnd + 1);
}

SessionLog::Scope::Scope(SessionLog &log) : m_previous(std::exchange(boundLog, &log)) {}

SessionLog::Scope::~Scope()
{
    boundLog = m_previous;
}

std::optional<int> parseLogLevel(std::string_view text, int current)
{
    // Flags come first. They say how lines are printed, which a log decides itself.
    for (;;) {
        std::string_view rest = text;
        if (rest.starts_with('+') || rest.starts_with('-')) {
            rest.remove_prefix(1);
        }
        const std::string_view flag = rest.starts_with("repeat")  ? "repeat"
                                      : rest.starts_with("level") ? "level"
                                                                  : "";
        if (flag.empty()) {
            break;
        }
        text = rest.substr(flag.size());
    }
    if (text.starts_with('+')) {
        text.remove_prefix(1);
    }
    if (text.empty()) {
        return current;
    }
    for (const auto &[name, level] : levelNames) {
        if (text == name) {
            return level;
        }
    }
    int number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (error != std::errc{} || end != text.data() + text.size()) {
        return std::nullopt;
    }
    return number;
}

}
