// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once
#include "platform/ffmpeg/libav.h"

#include <cstdint>
#include <string>

namespace veltro::ffmpeg {

enum class CodecUse { encode, decode };

/// Finds a codec by its own name or by its format's name, "libopus" or "opus".
/// @throws CommandFailed when there is none, or it is of another kind.
[[nodiscard]] const AVCodec &findCodec(const std::string &name, AVMediaType type, CodecUse use);

/// A codec tag as it is written on a command line: a number, or four characters.
[[nodiscard]] std::uint32_t parseTag(const std::string &text);

/// Whether the codec of this kind holds text, pictures or neither: AV_CODEC_PROP_ bits.
[[nodiscard]] int subtitleKind(AVCodecID codec);

}
