// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once
#include <stdexcept>

namespace veltro {

/// The interpreter would not survive its start in the environment of this process.
struct EnvironmentError : std::runtime_error {
    using std::runtime_error::runtime_error;
};

/// Looks for what makes the loaded library end the process while it starts: a PYTHONHOME without
/// its standard library, or a PYTHONPATH with the standard library of another version.
/// @throws EnvironmentError, with a text fit to show.
void checkInterpreterEnvironment();

} // namespace veltro
