// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once
#include "platform/ffmpeg/av_ptr.h"

#include <cstdint>
#include <string>
#include <string_view>

namespace veltro::ffmpeg {

class SessionLog;

/// A file that claims more streams than this is cut off there.
inline constexpr int maxStreams = 1000;
/// Pictures above this size (8192 by 8192) are not decoded.
inline constexpr std::int64_t maxPixels = std::int64_t{8192} * 8192;

/// What the name of an input or output stands for.
enum class InputKind {
    localFile,
    network,  ///< http, https, rtmp and their kin, read through the network
    standard, ///< "-" or "pipe:": the process's own standard input or output
    other,    ///< any other protocol or a word that the libraries do not know
};

struct InputName {
    InputKind kind = InputKind::other;
    std::string path; ///< of a local file, without "file:"; otherwise the name as it was given

    bool operator==(const InputName &) const = default;
};

/// Reads a name by the libraries' own rule: what stands before the first colon is a protocol, if it
/// has only letters, digits, '+', '-' and '.'.
[[nodiscard]] InputName classifyInput(std::string_view name);

/// The demuxers that a local file may be read by, as a format_whitelist. Those that read files or
/// addresses named inside the file (playlists, concat scripts, session descriptions, picture
/// series) are not among them.
[[nodiscard]] const char *localDemuxers();

/// How a local input is opened.
struct LocalInputOptions {
    const AVInputFormat *format = nullptr; ///< recognised from the content when null
    DictionaryPtr *options = nullptr;      ///< for the demuxer; keeps what nobody took
    AVIOInterruptCB interrupt = {nullptr, nullptr};
    SessionLog *log = nullptr; ///< where the demuxer's lines go, from whatever thread
};

/// Opens a local file such that its content cannot name anything else to read: the bytes come from
/// this one file, opened here, every further opening is refused, and only localDemuxers() are
/// considered, whatever the file is called. Refuses what is not a regular file without waiting for
/// it.
/// @param name the path, or "file:" and the path; the context keeps it as its address.
/// @returns 0 and the context, or an AVERROR code: AVERROR_INVALIDDATA for content that is not
///          media or is of a kind that is not allowed here.
[[nodiscard]] int openLocalInput(const std::string &name, const LocalInputOptions &how,
                                 InputContextPtr &opened);

/// Reads as much of the file as is needed to know its streams, within maxPixels.
/// @returns 0 or more, or an AVERROR code.
[[nodiscard]] int readStreamInformation(AVFormatContext &input);

}
