// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once
#include <sys/resource.h>

namespace veltro {

/// Has the calling thread, and no other, give way to whatever else wants the processor. For good:
/// a user's process may not take it back.
inline void giveWayToOthers()
{
    constexpr int lowest = 19;
    setpriority(PRIO_PROCESS, 0, lowest);
}

}
