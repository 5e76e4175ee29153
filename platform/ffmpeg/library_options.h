// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once
#include "platform/ffmpeg/av_ptr.h"
#include "platform/ffmpeg/command_line.h"

#include <string_view>

namespace veltro::ffmpeg {

/// Whether a codec, format, protocol, scaler or resampler of the libraries has such an option.
[[nodiscard]] bool isLibraryOption(std::string_view written);

/// The options of the libraries that were given for one file, sorted by who takes them. A name
/// that codecs and formats share goes to both.
struct LibraryOptions {
    DictionaryPtr codec; ///< keys may end in ":SPECIFIER"
    DictionaryPtr format;
    DictionaryPtr scaler;
    DictionaryPtr resampler;
};

[[nodiscard]] LibraryOptions sortLibraryOptions(const FileArguments &file);

/// What of the codec options is meant for one stream and can be taken by its codec.
/// @param codec may be null: then every option that fits the stream is taken.
/// @throws CommandFailed for a stream specifier that cannot be read.
[[nodiscard]] DictionaryPtr codecOptionsFor(const AVDictionary *all, AVFormatContext *file,
                                            AVStream *stream, const AVCodec *codec);

}
