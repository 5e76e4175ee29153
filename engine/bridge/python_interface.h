// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once
#include "engine/bridge/python_object.h"

#include <string>

namespace veltro {

/// The interpreter as a whole, reached through Python(). It lives until the process ends.
class PythonInterface {
public:
    PythonInterface(const PythonInterface &) = delete;
    PythonInterface &operator=(const PythonInterface &) = delete;

    /// The builtin of that name; a missing name stops the process.
    [[nodiscard]] PythonObject attr(const std::string &name) const;
    [[nodiscard]] const PythonObject &builtins() const { return m_builtins; }

    /// A failed import stops the process.
    [[nodiscard]] PythonObject import(const std::string &name) const;
    /// @throws PythonError
    [[nodiscard]] PythonObject attemptImport(const std::string &name) const;

    /// The interpreter's sys.version.
    [[nodiscard]] std::string version() const;

private:
    friend PythonInterface &Python();
    PythonInterface();

    PythonObject m_builtins;
};

/// The interpreter. Its first use loads the library, which stops the process where there is none,
/// and starts the interpreter; the thread that starts it holds the interpreter lock from then on.
/// A start that failed is tried again by the next use.
/// @throws EnvironmentError from a use that has to start the interpreter.
PythonInterface &Python();

}
