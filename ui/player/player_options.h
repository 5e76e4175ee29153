// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once
#include "ui/player/mpv_library.h"

#include <string>

namespace veltro::player {

/// Sets what every player has, before it is initialised: nothing of the user's own configuration
/// and no scripts, sound where there is a device, and a file that is played can name no other file
/// and no address. Any thread.
/// @param demuxers what may read a file, as a format_whitelist.
/// @returns whether all of the guards hold; without them nothing may be played.
[[nodiscard]] bool setOptions(const MpvLibrary &library, mpv_handle *handle,
                              const std::string &demuxers);

}
