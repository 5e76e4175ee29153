// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once
#include <QtGlobal>

namespace veltro {

/// Makes this machine one without a sound device, for this process: tests are neither heard nor
/// helped by what a desk has. Before any other thread.
inline void takeSoundAway()
{
    qputenv("PULSE_SERVER", "unix:/nonexistent");
    qputenv("PIPEWIRE_REMOTE", "/nonexistent");
    qputenv("ALSA_CONFIG_PATH", "/nonexistent");
}

}
