// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once
#include "platform/ffmpeg/media_tools.h"

// The one thing that the module exports; the loader looks it up under the name below. The object
// lives until the process ends.
extern "C" veltro::ffmpeg::MediaTools *veltroMediaTools() noexcept;

namespace veltro::ffmpeg {

inline constexpr const char *mediaModuleFile = "veltro-media.so";
inline constexpr const char *mediaModuleEntry = "veltroMediaTools";

}
