// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/ffmpeg/information.h"

#include "platform/ffmpeg/libav.h"

#include <array>
#include <cstdio>
#include <initializer_list>

namespace veltro::ffmpeg {
namespace {

struct LinkedLibrary {
    const char *name;
    unsigned built;   // the version of the headers
    unsigned running; // the version of what is loaded
};

std::string libraryLine(const LinkedLibrary &library, const char *indent)
{
    std::array<char, 80> line{};
    std::snprintf(line.data(), line.size(), "%slib%-11s %2u.%3u.%3u / %2u.%3u.%3u\n", indent,
                  library.name, AV_VERSION_MAJOR(library.built), AV_VERSION_MINOR(library.built),
                  AV_VERSION_MICRO(library.built), AV_VERSION_MAJOR(library.running),
                  AV_VERSION_MINOR(library.running), AV_VERSION_MICRO(library.running));
    return line.data();
}

std::string describeProgram(std::string_view program, const char *indent)
{
    std::string text(program);
    text.append(" version ").append(av_version_info());
    text.append(" Copyright (c) the FFmpeg developers\n");
    text.append(indent).append("configuration: ").append(avformat_configuration()).append("\n");
    for (const LinkedLibrary &library : std::initializer_list<LinkedLibrary>{
             {"avutil", LIBAVUTIL_VERSION_INT, avutil_version()},
             {"avcodec", LIBAVCODEC_VERSION_INT, avcodec_version()},
             {"avformat", LIBAVFORMAT_VERSION_INT, avformat_version()},
             {"avfilter", LIBAVFILTER_VERSION_INT, avfilter_version()},
             {"swscale", LIBSWSCALE_VERSION_INT, swscale_version()},
             {"swresample", LIBSWRESAMPLE_VERSION_INT, swresample_version()},
         }) {
        text.append(libraryLine(library, indent));
    }
    return text;
}

}

std::string banner(std::string_view program)
{
    return describeProgram(program, "  ");
}

std::string versionText(std::string_view program)
{
    return describeProgram(program, "");
}

std::string bitstreamFiltersText()
{
    std::string text("Bitstream filters:\n");
    void *position = nullptr;
    while (const AVBitStreamFilter *filter = av_bsf_iterate(&position)) {
        text.append(filter->name).append("\n");
    }
    return text.append("\n");
}

}
