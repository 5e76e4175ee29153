// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/ffmpeg/stream_path.h"

#include "platform/ffmpeg/copy_path.h"
#include "platform/ffmpeg/subtitle_path.h"
#include "platform/ffmpeg/transcode_path.h"

namespace veltro::ffmpeg {

std::unique_ptr<StreamPath> makeStreamPath(InputFile &input, OutputFile &output,
                                           OutputStream &stream, const RunContext &run)
{
    if (stream.isCopied) {
        return std::make_unique<CopyPath>(input, output, stream, run);
    }
    if (stream.type() == AVMEDIA_TYPE_SUBTITLE) {
        return std::make_unique<SubtitlePath>(output, stream, run);
    }
    return std::make_unique<TranscodePath>(input, output, stream, run);
}

}
