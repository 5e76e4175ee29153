// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once
#include "platform/ffmpeg/output_file.h"
#include "platform/ffmpeg/stream_map.h"

#include <string_view>
#include <vector>

namespace veltro::ffmpeg {

/// A command that names this encoder makes a saved file playable. The encoder itself belongs to
/// another platform: here the name stands for the best H.264 encoder of this machine, with the
/// settings that a person expects of such a file. Everything else goes the ordinary way.
inline constexpr std::string_view playbackEncoder = "h264_videotoolbox";

[[nodiscard]] bool isPlaybackTranscode(const FileArguments &output);

/// Refuses what has no moving picture and adds the subtitles that the output can carry, which the
/// default choice of streams leaves out.
/// @throws CommandFailed
void fitToPlayback(const OutputFile &output, const InputFiles &inputs,
                   std::vector<InputStream *> &sources);

/// Refuses a result that is clearly shorter than the input says that it is: the input broke off.
/// @throws CommandFailed
void refuseShortened(const InputFiles &inputs,
                     const std::vector<std::unique_ptr<OutputFile>> &outputs);

/// Gives the stream the encoder that stands for playbackEncoder.
/// @throws CommandFailed when the machine has none.
void choosePlaybackEncoder(OutputStream &stream, const RunContext &run);
/// What the command line leaves open: timestamps as they are, even sizes.
void tunePlaybackVideo(OutputStream &stream);

/// How a subtitle gets into the output: unchanged, by an encoder, or not at all.
struct SubtitleTreatment {
    bool isPossible = false;
    const AVCodec *encoder = nullptr; ///< null when it is copied
};
[[nodiscard]] SubtitleTreatment treatPlaybackSubtitle(const AVOutputFormat *format,
                                                      const InputStream &source);

}
