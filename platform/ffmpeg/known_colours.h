// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once
#include "platform/ffmpeg/libav.h"

#include <cstring>

namespace veltro::ffmpeg {

/// The libraries put numbers from files into their enumerations, also those that have no name
/// there, which C++ may not so much as read. Makes "not told" of them.
template <typename Enumeration>
void forgetUnnamed(Enumeration &field, int names, Enumeration notTold)
{
    int number = 0;
    static_assert(sizeof(number) == sizeof(field));
    std::memcpy(&number, &field, sizeof(number));
    if (number < 0 || number >= names) {
        field = notTold;
    }
}

/// Of a stream, once it is known what it is.
inline void forgetUnnamedColours(AVCodecParameters &codec)
{
    forgetUnnamed(codec.color_range, AVCOL_RANGE_NB, AVCOL_RANGE_UNSPECIFIED);
    forgetUnnamed(codec.color_space, AVCOL_SPC_NB, AVCOL_SPC_UNSPECIFIED);
    forgetUnnamed(codec.color_trc, AVCOL_TRC_NB, AVCOL_TRC_UNSPECIFIED);
    forgetUnnamed(codec.color_primaries, AVCOL_PRI_NB, AVCOL_PRI_UNSPECIFIED);
    forgetUnnamed(codec.chroma_location, AVCHROMA_LOC_NB, AVCHROMA_LOC_UNSPECIFIED);
}

/// Of a decoded picture, before anything is made from it.
inline void forgetUnnamedColours(AVFrame &frame)
{
    forgetUnnamed(frame.color_range, AVCOL_RANGE_NB, AVCOL_RANGE_UNSPECIFIED);
    forgetUnnamed(frame.colorspace, AVCOL_SPC_NB, AVCOL_SPC_UNSPECIFIED);
    forgetUnnamed(frame.color_trc, AVCOL_TRC_NB, AVCOL_TRC_UNSPECIFIED);
    forgetUnnamed(frame.color_primaries, AVCOL_PRI_NB, AVCOL_PRI_UNSPECIFIED);
    forgetUnnamed(frame.chroma_location, AVCHROMA_LOC_NB, AVCHROMA_LOC_UNSPECIFIED);
}

}
