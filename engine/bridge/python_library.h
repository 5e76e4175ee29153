// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once
#include <exception>

namespace veltro {

/// The interpreter library of this process: found and loaded once, on first use, and never
/// unloaded. Any thread.
///
/// The environment steers it: PYTHON_LIBRARY names the file, PYTHON_VERSION (such as 3.12) limits
/// the search to one version, PYTHON_LOADER_LOGGING has every step told on standard error. A
/// library that the process already carries comes before all of them.
class PythonLibrary {
public:
    struct Error : std::exception {
        enum class Kind { pythonLibraryNotFound };
        Kind kind = Kind::pythonLibraryNotFound;

        [[nodiscard]] const char *what() const noexcept override;
    };

    /// Loads the library unless that has been done.
    /// @throws Error
    static void load();

    /// The address of an entry point or a global of the library, or null when it has none of that
    /// name. A library that cannot be found stops the process.
    [[nodiscard]] static void *symbol(const char *name);

    /// Whether the library has the names of before version 3; stops the process likewise.
    [[nodiscard]] static bool isLegacy();
};

}
