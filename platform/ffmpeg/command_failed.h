// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once
#include <exception>
#include <string>
#include <utility>

namespace veltro::ffmpeg {

/// Ends a command. The text is what the tool would print last, without the final line feed; its
/// last line is the reason that a person is shown.
class CommandFailed : public std::exception {
public:
    explicit CommandFailed(std::string text, int code = 1) : m_text(std::move(text)), m_code(code)
    {}
    [[nodiscard]] const char *what() const noexcept override { return m_text.c_str(); }
    [[nodiscard]] int code() const noexcept { return m_code; }

private:
    std::string m_text;
    int m_code;
};

/// Ends a command that was cancelled.
class CommandCancelled : public std::exception {
public:
    [[nodiscard]] const char *what() const noexcept override { return "Cancelled"; }
};

}
