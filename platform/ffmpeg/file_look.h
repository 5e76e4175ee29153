// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once
#include "platform/ffmpeg/av_ptr.h"
#include "platform/ffmpeg/locale_scope.h"
#include "platform/ffmpeg/session_log.h"
#include "platform/ffmpeg/time_limit.h"

#include <filesystem>

namespace veltro::ffmpeg {

/// A local file that is opened to look into it, within a limit of time that counts from here. What
/// the libraries have to say meanwhile gets into no log. One thread, which keeps the "C" locale as
/// long as this lives.
class FileLook {
public:
    FileLook(const std::filesystem::path &file, std::chrono::steady_clock::duration allowed);
    FileLook(const FileLook &) = delete;
    FileLook &operator=(const FileLook &) = delete;

    /// Null where the file is not there, is no media, or is of a kind that is not looked into.
    [[nodiscard]] AVFormatContext *input() const { return m_input.get(); }
    [[nodiscard]] const TimeLimit &limit() const { return m_limit; }

private:
    const LocaleScope m_locale;
    SessionLog m_log;
    const SessionLog::Scope m_bound;
    TimeLimit m_limit;
    InputContextPtr m_input; // ends before the log and the limit that it uses
};

}
