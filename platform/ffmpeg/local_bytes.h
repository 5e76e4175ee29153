// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once
#include "platform/ffmpeg/libav.h"

#include <memory>
#include <string>

namespace veltro::ffmpeg {

/// Closes a byte stream of openLocalBytes() and its file.
void closeLocalBytes(AVIOContext *bytes);

struct LocalBytesDeleter {
    void operator()(AVIOContext *bytes) const { closeLocalBytes(bytes); }
};
using LocalBytesPtr = std::unique_ptr<AVIOContext, LocalBytesDeleter>;

/// Opens a regular file for reading and seeking as a byte stream of our own, so that no name
/// passes through the libraries' protocols. Does not wait at a pipe or a device: they are refused.
/// @param interrupt asked before each read, so that a demuxer which searches a whole file for one
///        packet ends when its user does not want it any more.
/// @returns 0 and the stream, or an AVERROR code.
[[nodiscard]] int openLocalBytes(const std::string &path, AVIOInterruptCB interrupt,
                                 LocalBytesPtr &opened);

}
