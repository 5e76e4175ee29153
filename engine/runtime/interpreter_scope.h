// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

namespace veltro {

/// One interpreter job on this thread: takes the interpreter lock when an interpreter runs, and
/// gives it back. A job inside a job is part of it. A job that itself started the interpreter
/// gives up, at its end, the lock that the start left it with.
class InterpreterScope {
public:
    InterpreterScope();
    ~InterpreterScope();
    InterpreterScope(const InterpreterScope &) = delete;
    InterpreterScope &operator=(const InterpreterScope &) = delete;

    /// Whether no other job of this thread encloses this one.
    [[nodiscard]] bool isOutermost() const;

private:
    const bool m_locked;
    const int m_state;
};

}
