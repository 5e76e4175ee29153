// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "engine/transcode/playback_transcode.h"

#include "engine/transcode/ffmpeg_runner.h"
#include "platform/ffmpeg/media_tools.h"
#include "platform/log.h"

#include <algorithm>
#include <array>
#include <string_view>
#include <system_error>
#include <vector>

namespace veltro {
namespace {

namespace fs = std::filesystem;

constexpr std::array<std::string_view, 5> playableCodecs{"h264", "avc", "hevc", "h265", "mpeg4"};
constexpr std::array<std::string_view, 5> foreignCodecs{"vp9", "vp09", "av1", "av01", "vp8"};

template <std::size_t Count>
bool contains(const std::array<std::string_view, Count> &set, std::string_view name)
{
    return std::find(set.begin(), set.end(), name) != set.end();
}

std::string lowerCased(std::string text)
{
    std::transform(text.begin(), text.end(), text.begin(),
                   [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c; });
    return text;
}

void removeQuietly(const fs::path &file)
{
    std::error_code ignored; // there is usually nothing to remove
    fs::remove(file, ignored);
}

std::vector<std::string> transcodeArguments(const fs::path &input, const fs::path &output)
{
    return {"-y",           "-hide_banner",
            "-i",           input.string(),
            "-c:v",         "h264_videotoolbox",
            "-b:v",         "4M",
            "-allow_sw",    "1",
            "-pix_fmt",     "yuv420p",
            "-c:a",         "copy",
            "-movflags",    "+faststart",
            output.string()};
}

/// Moves the new file over the old one in one step, with the old one's permissions.
void replaceFile(const fs::path &old, const fs::path &replacement)
{
    fs::permissions(replacement, fs::status(old).permissions());
    fs::rename(replacement, old);
}

}

std::optional<std::string> firstVideoCodec(const fs::path &file)
{
    try {
        for (const ffmpeg::StreamInformation &stream : ffmpeg::mediaTools().streams(file).value_or(
                 std::vector<ffmpeg::StreamInformation>{})) {
            if (stream.type == "video" && !stream.codec.empty()) {
                return lowerCased(stream.codec);
            }
        }
    } catch (const ffmpeg::MediaToolsMissing &missing) {
        logLine(LogTag::ffmpeg, missing.what());
    }
    return std::nullopt;
}

bool needsPlaybackTranscode(const fs::path &file)
{
    const std::optional<std::string> codec = firstVideoCodec(file);
    if (!codec) {
        logLine(LogTag::engine,
                "codec detection failed for " + file.filename().string() + "; forcing transcode");
        return true;
    }
    if (contains(playableCodecs, *codec)) {
        return false;
    }
    if (!contains(foreignCodecs, *codec)) {
        logLine(LogTag::engine, "unknown video codec " + *codec + "; transcoding");
    }
    return true;
}

bool transcodeForPlayback(const fs::path &file)
{
    fs::path output = file;
    output.replace_extension("transcoded.mp4");
    removeQuietly(output);
    const std::vector<std::string> arguments = transcodeArguments(file, output);
    const std::int32_t code = runFFmpeg(arguments);
    std::error_code unreadable;
    if (code != 0 || !fs::exists(output, unreadable)) {
        removeQuietly(output);
        return false;
    }
    try {
        replaceFile(file, output);
        return true;
    } catch (const fs::filesystem_error &error) {
        logLine(LogTag::ffmpeg, "transcode replace failed: " + error.code().message());
        removeQuietly(output);
        return false;
    }
}

}
