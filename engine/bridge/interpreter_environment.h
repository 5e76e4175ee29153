// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once
#include <optional>
#include <stdexcept>
#include <string>

namespace veltro {

/// The interpreter would not survive its start in the environment of this process.
struct EnvironmentError : std::runtime_error {
    using std::runtime_error::runtime_error;
};

/// Looks for what makes the loaded library end the process while it starts: a PYTHONHOME without
/// its standard library, or a PYTHONPATH with the standard library of another version.
/// @throws EnvironmentError, with a text fit to show.
void checkInterpreterEnvironment();

/// The program that the loaded library belongs to, such as "/usr/bin/python3.11"; it need not
/// exist. Left to itself the interpreter goes by the first "python3" on PATH, and starts with the
/// standard library of whatever that is. Nothing where PYTHONHOME says it, or where no standard
/// library lies around the library's file.
std::optional<std::wstring> programOfLibrary();

}
