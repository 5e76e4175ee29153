// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once
// The lock that the start of the interpreter leaves its thread holding, until that thread gives it
// up. Included by the sources of this folder only.

namespace veltro {

/// This thread has just started the interpreter and holds its lock.
void setStartupThread();

/// Gives that lock up, if this thread still holds it and no job is open on it.
void releaseStartupThread();

}
