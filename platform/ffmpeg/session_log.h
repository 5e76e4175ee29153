// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once
#include <cstdarg>
#include <cstddef>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>

namespace veltro::ffmpeg {

/// What one command would have written to standard error: its own lines and those of the FFmpeg
/// libraries, which know one callback for the whole process only. A line of theirs belongs to the
/// log that its thread is bound to (Scope); else to the log that its context names (set the
/// `opaque` of a format, codec or filter graph context to the SessionLog); else to the only log
/// alive; else to nobody. Any thread.
class SessionLog {
public:
    /// Longer texts lose whole lines from their beginning.
    static constexpr std::size_t capacity = 1 << 18;

    /// Takes the libraries' callback, also when another library took it in the meantime.
    SessionLog();
    ~SessionLog();
    /// Takes the libraries' callback back from a library that took it while logs were alive.
    static void takeCallback();
    SessionLog(const SessionLog &) = delete;
    SessionLog &operator=(const SessionLog &) = delete;

    /// Lines above this AV_LOG_ level are left out; AV_LOG_INFO at first.
    void setLevel(int level);
    [[nodiscard]] int level() const;

    /// Adds a text of our own, line feed included, if the level lets it pass.
    void write(int level, std::string_view text);
    /// Adds a text whatever the level is.
    void append(std::string_view text);

    [[nodiscard]] std::string text() const;

    /// Binds the calling thread to a log for the scope's life; scopes nest.
    class Scope {
    public:
        explicit Scope(SessionLog &log);
        ~Scope();
        Scope(const Scope &) = delete;
        Scope &operator=(const Scope &) = delete;

    private:
        SessionLog *const m_previous;
    };

private:
    static void receive(void *context, int level, const char *format, std::va_list arguments);
    void format(void *context, int level, const char *format, std::va_list arguments);
    void appendLocked(std::string_view text);

    mutable std::mutex m_lock;
    std::string m_text;    // guarded by m_lock
    int m_level;           // guarded by m_lock
    int m_printPrefix = 1; // guarded by m_lock; whether the libraries' next text begins a line
};

/// Reads the value of -loglevel, "repeat+info" or "24", as the tool does.
/// @param current what a value of flags alone, "repeat", leaves in force.
/// @returns an AV_LOG_ level, or nothing for a text that names none.
[[nodiscard]] std::optional<int> parseLogLevel(std::string_view text, int current);

}
