// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once
#include <functional>
#include <string_view>

namespace veltro {

/// Ends the process for a reason that no caller could mend: writes the message to standard error,
/// shows the alert when one is set, and aborts. Any thread.
[[noreturn]] void stopProcess(std::string_view message);

/// What shows the message to the user before the process ends; an empty function shows nothing.
/// It is called on the thread that stops the process, which may hold the interpreter lock.
void setStopAlert(std::function<void(std::string_view message)> alert);

}
