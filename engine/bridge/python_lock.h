// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

/// The interpreter's global lock as the operations that the runtime host builds its rule from.
/// Each is looked up in the whole process, so that none of them loads a library. Any thread.
namespace veltro::python_lock {

/// Whether an interpreter runs in this process.
[[nodiscard]] bool interpreterRuns();

/// Waits for the lock; 0 where there is nothing to wait for.
[[nodiscard]] int ensure();

/// Gives back what ensure() returned.
void release(int state);

/// Gives up the lock that the start of the interpreter left this thread holding.
void saveThread();

/// Whether this thread may touch interpreter objects. True where that cannot be told.
[[nodiscard]] bool isHeld();

}
