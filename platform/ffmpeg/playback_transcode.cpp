// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/ffmpeg/playback_transcode.h"

#include "platform/ffmpeg/codec_names.h"

#include <algorithm>
#include <array>
#include <utility>

namespace veltro::ffmpeg {
namespace {

bool carries(const AVOutputFormat *format, AVCodecID codec)
{
    return avformat_query_codec(format, codec, FF_COMPLIANCE_NORMAL) == 1;
}

bool isMovingPicture(const InputStream *stream)
{
    return stream->type() == AVMEDIA_TYPE_VIDEO && !stream->isPicture();
}

}

bool isPlaybackTranscode(const FileArguments &output)
{
    return std::any_of(output.options.begin(), output.options.end(), [](const auto &given) {
        return given.name == "c" && given.value == playbackEncoder;
    });
}

void fitToPlayback(const OutputFile &output, const InputFiles &inputs,
                   std::vector<InputStream *> &sources)
{
    // A cover is no reason to make an audio file into a video.
    if (std::none_of(sources.begin(), sources.end(), isMovingPicture)) {
        throw CommandFailed("There is no video to convert in " +
                            (inputs.empty() ? std::string("the input") : inputs.front()->url()));
    }
    const FileArguments &arguments = output.arguments();
    if (arguments.value("map") || arguments.isOn("sn")) {
        return;
    }
    std::erase_if(
        sources, [](const InputStream *stream) { return stream->type() == AVMEDIA_TYPE_SUBTITLE; });
    for (const auto &input : inputs) {
        for (InputStream &stream : input->streams()) {
            if (stream.type() == AVMEDIA_TYPE_SUBTITLE && !stream.isDisabled &&
                treatPlaybackSubtitle(output.context()->oformat, stream).isPossible) {
                sources.push_back(&stream);
            }
        }
    }
}

void refuseShortened(const InputFiles &inputs,
                     const std::vector<std::unique_ptr<OutputFile>> &outputs)
{
    std::int64_t written = 0;
    for (const auto &output : outputs) {
        if (output->range().duration || output->range().start) {
            return; // a part was asked for
        }
        for (const auto &stream : output->streams()) {
            if (stream->lastDts != noTimestamp) {
                written = std::max(written, av_rescale_q(stream->lastDts, stream->stream->time_base,
                                                         microseconds));
            }
        }
    }
    for (const auto &input : inputs) {
        const std::int64_t announced = input->context()->duration;
        const bool isWhole = !input->range().duration && !input->range().start;
        if (input->context()->duration_estimation_method == AVFMT_DURATION_FROM_BITRATE) {
            continue; // nobody has said it
        }
        const std::int64_t tolerated = std::max(std::int64_t{AV_TIME_BASE}, announced / 10);
        if (isWhole && announced > 0 && addTime(written, tolerated) < announced) {
            throw CommandFailed(input->url() + ": the file breaks off before its end");
        }
    }
}

void choosePlaybackEncoder(OutputStream &stream, const RunContext &run)
{
    const AVCodecParameters &codec = *stream.source->stream->codecpar;
    std::vector<H264Encoder> list = run.h264Encoders(codec.width, codec.height);
    if (run.avoidsHardware) {
        std::erase_if(list, [](const H264Encoder &candidate) { return candidate.isHardware; });
    }
    H264Encoder chosen = chooseH264Encoder(std::move(list), codec.width, codec.height);
    EncodeSettings &encode = stream.encode;
    encode.encoder = chosen.encoder;
    encode.ownOptions = std::move(chosen.options);
    encode.isHardware = chosen.isHardware;
    encode.makeDevice = std::move(chosen.makeDevice);
    encode.deviceFormat = chosen.frameFormat;
}

void tunePlaybackVideo(OutputStream &stream)
{
    EncodeSettings &encode = stream.encode;
    for (const auto &[name, value] : encode.ownOptions) {
        av_dict_set(DictionaryLoan(encode.options), name.c_str(), value.c_str(),
                    AV_DICT_DONT_OVERWRITE);
    }
    encode.keepsEveryFrame = true;
    encode.cropsToEven = true;
    if (!encode.timeBase.num) {
        encode.timeBase = {-1, 1};
    }
}

SubtitleTreatment treatPlaybackSubtitle(const AVOutputFormat *format, const InputStream &source)
{
    const AVCodecID codec = source.stream->codecpar->codec_id;
    if (carries(format, codec)) {
        return {true, nullptr};
    }
    if (!source.decoder || !(subtitleKind(codec) & AV_CODEC_PROP_TEXT_SUB)) {
        return {};
    }
    constexpr std::array texts{AV_CODEC_ID_MOV_TEXT, AV_CODEC_ID_SUBRIP, AV_CODEC_ID_WEBVTT,
                               AV_CODEC_ID_ASS};
    for (const AVCodecID text : texts) {
        const AVCodec *encoder = carries(format, text) ? avcodec_find_encoder(text) : nullptr;
        if (encoder) {
            return {true, encoder};
        }
    }
    return {};
}

}
