// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once
#include "platform/ffmpeg/h264_encoder.h"

namespace veltro::ffmpeg {

/// The graphics card as VAAPI offers it, by its render node: no display server is asked.
[[nodiscard]] std::unique_ptr<EncoderDevice> makeVaapiDevice();

}
