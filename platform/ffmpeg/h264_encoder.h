// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once
#include "platform/ffmpeg/libav.h"

#include <string>
#include <utility>
#include <vector>

namespace veltro::ffmpeg {

/// An H.264 encoder of this machine, and what it is told besides the command line's own words.
struct H264EncoderChoice {
    const AVCodec *encoder = nullptr;
    std::vector<std::pair<std::string, std::string>> options;
};

/// The encoder to make a file playable with, for pictures of this size.
/// @throws CommandFailed when the libraries have no H.264 encoder.
[[nodiscard]] H264EncoderChoice chooseH264Encoder(int width, int height);

}
