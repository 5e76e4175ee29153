// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/ffmpeg/safe_input.h"

#include "platform/ffmpeg/known_colours.h"
#include "platform/ffmpeg/libav.h"
#include "platform/ffmpeg/local_bytes.h"
#include "platform/ffmpeg/session_log.h"

#include <algorithm>
#include <array>
#include <memory>
#include <span>
#include <string>
#include <utility>
#include <vector>

namespace veltro::ffmpeg {
namespace {

constexpr const char *allowedDemuxers =
    // what pages serve and what we write
    "mov,mp4,m4a,3gp,3g2,mj2,matroska,webm,mpegts,flv,live_flv,ogg,mp3,aac,flac,wav,w64,"
    // older containers
    "avi,asf,mpeg,mpegvideo,rm,ivf,nut,mxf,dv,aiff,au,caf,amr,ac3,eac3,dts,truehd,ape,tta,wv,mpc,"
    "mpc8,tak,"
    // bare video
    "h264,hevc,m4v,obu,av1,mjpeg,vc1,"
    // pictures, one in a file
    "gif,apng,bmp_pipe,gif_pipe,jpeg_pipe,jpegxl_pipe,png_pipe,tiff_pipe,webp_pipe,"
    // texts
    "webvtt,srt,ass,lrc,sami,subviewer,subviewer1,microdvd,mpl2,vplayer,stl,scc,realtext,jacosub,"
    "ffmetadata";

constexpr std::array<std::string_view, 14> networkProtocols{
    "http",   "https",  "httpproxy", "rtmp", "rtmpe", "rtmps", "rtmpt",
    "rtmpte", "rtmpts", "rtsp",      "tcp",  "tls",   "udp",   "ftp",
};

bool isProtocolCharacter(char c)
{
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '+' ||
           c == '-' || c == '.';
}

int refuseToOpen(AVFormatContext *input, AVIOContext **, const char *name, int, AVDictionary **)
{
    av_log(input, AV_LOG_ERROR, "Not opening '%s': a local file may name no other\n", name);
    return AVERROR(EPERM);
}

bool isLocalDemuxer(const AVInputFormat &format)
{
    return av_match_list(format.name, allowedDemuxers, ',') > 0;
}

// The name is taken into account first, as some texts are only known by it. A name may also
// mislead: ".jpg" stands for a series of pictures, which is not allowed, over the single one.
// @returns how sure the answer in input.iformat is, or an AVERROR code.
int recognise(AVFormatContext &input, const char *name)
{
    const auto tryWith = [&](const char *hint) {
        input.iformat = nullptr;
        return av_probe_input_buffer2(input.pb, &input.iformat, hint, &input, 0,
                                      input.format_probesize);
    };
    int score = tryWith(name);
    if (score >= 0 && !isLocalDemuxer(*input.iformat)) {
        score = tryWith("");
    }
    if (score >= 0 && !isLocalDemuxer(*input.iformat)) {
        av_log(&input, AV_LOG_ERROR, "Local files of this format are not read\n");
        return AVERROR_INVALIDDATA;
    }
    return score;
}

// Frees a context that no demuxer has been attached to.
struct UnopenedDeleter {
    void operator()(AVFormatContext *input) const { avformat_free_context(input); }
};
using UnopenedPtr = std::unique_ptr<AVFormatContext, UnopenedDeleter>;

// The caller's options come first: what guards the input is set over them, and none is left that
// could take back the flag by which the libraries know that the bytes are not theirs to close.
int makeGuarded(const LocalInputOptions &how, AVDictionary **options, AVIOContext *bytes,
                UnopenedPtr &prepared)
{
    UnopenedPtr input(avformat_alloc_context());
    if (!input) {
        return AVERROR(ENOMEM);
    }
    input->opaque = how.log;
    input->interrupt_callback = how.interrupt;
    if (const int error = av_opt_set_dict(input.get(), options); error < 0) {
        return error;
    }
    av_opt_set(input.get(), "format_whitelist", allowedDemuxers, 0);
    av_opt_set(input.get(), "protocol_whitelist", "", 0); // names none
    input->max_streams = std::min(input->max_streams, maxStreams);
    input->io_open = refuseToOpen;
    input->pb = bytes;
    prepared = std::move(input);
    return 0;
}

// Whoever looks into packets for what a stream is decodes them, and the limits can be set only on
// streams that are known before.
int readWithinLimits(AVFormatContext &input)
{
    const unsigned known = input.nb_streams;
    std::vector<AVDictionary *> options(known, nullptr);
    for (AVDictionary *&forStream : options) {
        av_dict_set_int(&forStream, "max_pixels", maxPixels, 0);
    }
    const int result = avformat_find_stream_info(&input, known ? options.data() : nullptr);
    for (AVDictionary *&forStream : options) {
        av_dict_free(&forStream);
    }
    return result;
}

// Reads on, without decoding, until the streams that only packets name are known, and goes back.
void meetStreams(AVFormatContext &input)
{
    const PacketPtr packet(av_packet_alloc());
    const std::int64_t end = avio_tell(input.pb) + input.probesize;
    while (packet && avio_tell(input.pb) < end && av_read_frame(&input, packet.get()) >= 0) {
        av_packet_unref(packet.get());
    }
    static_cast<void>(av_seek_frame(&input, -1, 0, AVSEEK_FLAG_BYTE)); // its lowest is the start
}

auto countVideo(const AVFormatContext &input)
{
    return std::ranges::count_if(
        std::span(input.streams, input.nb_streams),
        [](const AVStream *stream) { return stream->codecpar->codec_type == AVMEDIA_TYPE_VIDEO; });
}

// Whether pictures of a stream that only packets name are beyond the limit, or of no known size.
// To have read on changes a little what is found, so that is left to an input of its own.
bool hidesPictures(const AVFormatContext &input)
{
    SessionLog quiet; // what it finds, the input itself says again
    quiet.setLevel(AV_LOG_QUIET);
    const SessionLog::Scope bound(quiet);
    LocalInputOptions how;
    how.format = input.iformat;
    how.interrupt = input.interrupt_callback;
    how.log = &quiet;
    InputContextPtr scout;
    if (openLocalInput(input.url, how, scout) < 0) {
        return true;
    }
    const auto known = countVideo(*scout);
    meetStreams(*scout);
    if (countVideo(*scout) == known) {
        return false;
    }
    static_cast<void>(readWithinLimits(*scout));
    return std::ranges::any_of(std::span(scout->streams, scout->nb_streams),
                               [](const AVStream *stream) {
                                   const AVCodecParameters &codec = *stream->codecpar;
                                   return codec.codec_type == AVMEDIA_TYPE_VIDEO &&
                                          (codec.width <= 0 || codec.height <= 0);
                               });
}

bool mayNameStreamsLate(const AVFormatContext &input)
{
    const bool isOurs = input.flags & AVFMT_FLAG_CUSTOM_IO;
    return isOurs && (input.ctx_flags & AVFMTCTX_NOHEADER) &&
           !(input.iformat->flags & AVFMT_NO_BYTE_SEEK);
}

}

InputName classifyInput(std::string_view name)
{
    if (name == "-") {
        return {InputKind::standard, std::string(name)};
    }
    const auto end = std::find_if_not(name.begin(), name.end(), isProtocolCharacter);
    if (end == name.end() || *end != ':') {
        return {InputKind::localFile, std::string(name)};
    }
    const std::string_view protocol(name.begin(), end);
    if (protocol == "file") {
        return {InputKind::localFile, std::string(end + 1, name.end())};
    }
    if (protocol == "pipe") {
        return {InputKind::standard, std::string(name)};
    }
    const auto *known = std::find(networkProtocols.begin(), networkProtocols.end(), protocol);
    const bool isNetwork = known != networkProtocols.end();
    return {isNetwork ? InputKind::network : InputKind::other, std::string(name)};
}

const char *localDemuxers()
{
    return allowedDemuxers;
}

int openLocalInput(const std::string &name, const LocalInputOptions &how, InputContextPtr &opened)
{
    if (how.format && !isLocalDemuxer(*how.format)) {
        return AVERROR_INVALIDDATA;
    }
    LocalBytesPtr bytes;
    if (const int error = openLocalBytes(classifyInput(name).path, how.interrupt, bytes);
        error < 0) {
        return error;
    }
    DictionaryPtr none;
    DictionaryLoan options(how.options ? *how.options : none);
    UnopenedPtr prepared;
    if (const int error = makeGuarded(how, options, bytes.get(), prepared); error < 0) {
        return error;
    }
    const int score = how.format ? 0 : recognise(*prepared, name.c_str());
    if (score < 0) {
        return score;
    }
    const AVInputFormat *format = how.format ? how.format : prepared->iformat;
    AVFormatContext *input = prepared.release();
    if (const int error = avformat_open_input(&input, name.c_str(), format, options); error < 0) {
        return error; // the call has freed the context
    }
    input->probe_score = score;
    input->pb = bytes.release(); // closed with the context from here on
    opened.reset(input);
    return 0;
}

int readStreamInformation(AVFormatContext &input)
{
    if (mayNameStreamsLate(input) && hidesPictures(input)) {
        meetStreams(input);
    }
    const int result = readWithinLimits(input);
    for (const AVStream *stream : std::span(input.streams, input.nb_streams)) {
        forgetUnnamedColours(*stream->codecpar);
    }
    return result;
}

}
