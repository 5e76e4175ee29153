// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once
#include <exception>

namespace veltro {

/// The work was given up before it had an outcome of its own.
struct TaskCancelled : std::exception {
    [[nodiscard]] const char *what() const noexcept override { return "The task was cancelled."; }
};

}
