// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once
#include <functional>
#include <string_view>

namespace veltro {

/// Who speaks in the process log.
enum class LogTag {
    engine, ///< "[veltro] "
    ffmpeg, ///< "[ffmpeg] "
};

/// Writes one line to the process log (standard error). Control characters in the text, line
/// feeds among them, become blanks, so that nothing that comes from a page can forge a line.
/// Any thread; a line is never torn.
void logLine(LogTag tag, std::string_view text);

/// Sends the lines elsewhere; an empty function sends them back to standard error. The function
/// is called under the log's lock, on the thread that logs. For tests and for the crash report.
void setLogSink(std::function<void(std::string_view line)> sink);

}
