// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

namespace veltro {

/// Sets the variables by which the interpreter finds its library, its certificates and its place
/// for temporary files. Does so once; later calls change nothing. main() calls it first thing:
/// another thread that reads the environment meanwhile would read memory that is being replaced.
void setInterpreterEnvironment();

}
