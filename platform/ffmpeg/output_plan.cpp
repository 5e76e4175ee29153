// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/ffmpeg/output_plan.h"

#include "platform/ffmpeg/av_error.h"
#include "platform/ffmpeg/codec_names.h"
#include "platform/ffmpeg/libav_versions.h"
#include "platform/ffmpeg/output_metadata.h"
#include "platform/ffmpeg/playback_transcode.h"

#include <climits>
#include <string>

namespace veltro::ffmpeg {
namespace {

/// Looks up what was said of one output stream.
class StreamWords {
public:
    StreamWords(const OutputFile &file, const OutputStream &stream) : m_file(file), m_stream(stream)
    {}
    [[nodiscard]] std::optional<std::string> operator()(std::string_view name) const
    {
        return streamValue(m_file.arguments(), name, m_file.context(), m_stream.stream);
    }

private:
    const OutputFile &m_file;
    const OutputStream &m_stream;
};

bool canBeEncoded(AVMediaType type)
{
    return type == AVMEDIA_TYPE_VIDEO || type == AVMEDIA_TYPE_AUDIO ||
           type == AVMEDIA_TYPE_SUBTITLE;
}

const AVCodec &defaultEncoder(const OutputFile &file, const OutputStream &stream)
{
    const AVOutputFormat *format = file.context()->oformat;
    const AVCodecID id =
        av_guess_codec(format, nullptr, file.context()->url, nullptr, stream.type());
    if (const AVCodec *encoder = avcodec_find_encoder(id)) {
        return *encoder;
    }
    const std::string number =
        std::to_string(file.index()) + ":" + std::to_string(stream.stream->index);
    throw CommandFailed("Automatic encoder selection failed for output stream #" + number +
                        ". Default encoder for format " + format->name + " (codec " +
                        avcodec_get_name(id) +
                        ") is probably disabled. Please choose an encoder manually.\nError "
                        "selecting an encoder for stream " +
                        number);
}

void chooseCodec(const OutputFile &file, OutputStream &stream, const RunContext &run)
{
    const StreamWords words(file, stream);
    if (!canBeEncoded(stream.type())) {
        stream.isCopied = true;
        return;
    }
    const auto name = words("c");
    if (name == "copy") {
        stream.isCopied = true;
        return;
    }
    const bool isPlayback = isPlaybackTranscode(file.arguments());
    if (isPlayback && stream.type() == AVMEDIA_TYPE_SUBTITLE && !name) {
        stream.encode.encoder =
            treatPlaybackSubtitle(file.context()->oformat, *stream.source).encoder;
        stream.isCopied = !stream.encode.encoder;
        return;
    }
    if (name == playbackEncoder && stream.type() == AVMEDIA_TYPE_VIDEO) {
        choosePlaybackEncoder(stream, run);
    } else {
        stream.encode.encoder = name ? &findCodec(*name, stream.type(), CodecUse::encode)
                                     : &defaultEncoder(file, stream);
    }
}

void readCommonSettings(const OutputFile &file, OutputStream &stream)
{
    const StreamWords words(file, stream);
    const LibraryOptions &given = file.libraryOptions();
    DictionaryPtr codecOptions =
        codecOptionsFor(given.codec.get(), file.context(), stream.stream, stream.encode.encoder);
    (stream.isCopied ? stream.codecOptions : stream.encode.options) = std::move(codecOptions);
    if (const auto filters = words("bsf"); filters && !filters->empty()) {
        AVBSFContext *filter = nullptr;
        if (const int error = av_bsf_list_parse_str(filters->c_str(), &filter); error < 0) {
            throw CommandFailed("Error parsing bitstream filter sequence '" + *filters +
                                "': " + errorText(error));
        }
        stream.bitstreamFilter.reset(filter);
    }
    if (const auto tag = words("tag")) {
        stream.encode.tag = parseTag(*tag);
        stream.stream->codecpar->codec_tag = stream.encode.tag;
    }
    if (const auto limit = words("frames")) {
        stream.packetLimit = parseInteger("frames", *limit, 0, stream.packetLimit);
    }
    if (const auto count = words("max_muxing_queue_size")) {
        stream.waitingCountLimit =
            static_cast<std::size_t>(parseInteger("max_muxing_queue_size", *count, 0, INT_MAX));
    }
    if (const auto bytes = words("muxing_queue_data_threshold")) {
        stream.waitingBytesLimit = static_cast<std::size_t>(
            parseInteger("muxing_queue_data_threshold", *bytes, 0, INT_MAX));
    }
    stream.disposition = words("disposition");
    stream.copiesLeadingFrames = words("copyinkf").value_or("0") != "0";
    stream.copiesBeforeStart = words("copypriorss").value_or("1") != "0";
}

void refuseFilters(const OutputFile &file, const OutputStream &stream)
{
    const auto filters = StreamWords(file, stream)("filter");
    if (!filters || !stream.isCopied) {
        return;
    }
    throw CommandFailed("Filtergraph '" + *filters + "' was defined for " +
                        av_get_media_type_string(stream.type()) + " output stream " +
                        std::to_string(file.index()) + ":" + std::to_string(stream.stream->index) +
                        " but codec copy was selected.\n"
                        "Filtering and streamcopy cannot be used together.");
}

void readVideoSettings(const OutputFile &file, OutputStream &stream)
{
    const StreamWords words(file, stream);
    EncodeSettings &encode = stream.encode;
    if (const auto size = words("s");
        size && av_parse_video_size(&encode.width, &encode.height, size->c_str()) < 0) {
        throw CommandFailed("Invalid frame size: " + *size + ".");
    }
    if (const auto rate = words("r");
        rate && av_parse_video_rate(&encode.frameRate, rate->c_str()) < 0) {
        throw CommandFailed("Invalid framerate value: " + *rate);
    }
    if (const auto format = words("pix_fmt")) {
        encode.pixelFormat = av_get_pix_fmt(format->c_str());
        if (encode.pixelFormat == AV_PIX_FMT_NONE) {
            throw CommandFailed("Unknown pixel format requested: " + *format + ".");
        }
    }
    if (const auto base = words("enc_time_base");
        base && (av_parse_ratio(&encode.timeBase, base->c_str(), INT_MAX, 0, nullptr) < 0 ||
                 encode.timeBase.den <= 0)) {
        throw CommandFailed("Invalid time base: " + *base);
    }
    encode.keyFrames = words("force_key_frames").value_or("");
    const std::string mode = words("fps_mode").value_or("");
    encode.keepsEveryFrame = encode.keepsEveryFrame || mode == "passthrough" || mode == "0";
}

void readAudioSettings(const OutputFile &file, OutputStream &stream)
{
    const StreamWords words(file, stream);
    EncodeSettings &encode = stream.encode;
    if (const auto rate = words("ar")) {
        encode.sampleRate = static_cast<int>(parseInteger("ar", *rate, 0, INT_MAX));
    }
    if (const auto channels = words("ac")) {
        encode.channels = static_cast<int>(parseInteger("ac", *channels, 0, 512));
    }
    encode.channelLayout = words("ch_layout").value_or("");
    if (const auto format = words("sample_fmt")) {
        encode.sampleFormat = av_get_sample_fmt(format->c_str());
        if (encode.sampleFormat == AV_SAMPLE_FMT_NONE) {
            throw CommandFailed("Invalid sample format '" + *format + "'");
        }
    }
}

void readAspect(const OutputFile &file, OutputStream &stream)
{
    const auto aspect = StreamWords(file, stream)("aspect");
    if (aspect && (av_parse_ratio(&stream.aspect, aspect->c_str(), 255, 0, nullptr) < 0 ||
                   stream.aspect.num <= 0 || stream.aspect.den <= 0)) {
        throw CommandFailed("Invalid aspect ratio: " + *aspect);
    }
}

void readEncodeSettings(const OutputFile &file, OutputStream &stream)
{
    const StreamWords words(file, stream);
    EncodeSettings &encode = stream.encode;
    av_dict_copy(DictionaryLoan(encode.scaler), file.libraryOptions().scaler.get(), 0);
    av_dict_copy(DictionaryLoan(encode.resampler), file.libraryOptions().resampler.get(), 0);
    if (av_get_exact_bits_per_sample(encode.encoder->id) == 24) {
        av_dict_set(DictionaryLoan(encode.resampler), "output_sample_bits", "24", 0);
    }
    encode.isBitexact = file.arguments().isOn("bitexact");
    encode.filters = words("filter").value_or("");
    if (const auto quality = words("q")) {
        encode.quality = parseReal("q", *quality);
    }
    if (stream.type() == AVMEDIA_TYPE_VIDEO) {
        readVideoSettings(file, stream);
    } else if (stream.type() == AVMEDIA_TYPE_AUDIO) {
        readAudioSettings(file, stream);
    }
}

void addStream(OutputFile &file, InputStream &source, const RunContext &run)
{
    OutputStream &stream = file.addStream(source.type());
    stream.source = &source;
    chooseCodec(file, stream, run);
    readCommonSettings(file, stream);
    refuseFilters(file, stream);
    if (stream.type() == AVMEDIA_TYPE_VIDEO) {
        readAspect(file, stream);
    }
    if (!stream.isCopied) {
        stream.stream->codecpar->codec_id = stream.encode.encoder->id;
        readEncodeSettings(file, stream);
    }
    if (stream.type() == AVMEDIA_TYPE_VIDEO && !stream.isCopied &&
        isPlaybackTranscode(file.arguments())) {
        tunePlaybackVideo(stream);
    }
    InputFile::use(source, stream.isCopied);
}

void attachFile(OutputFile &file, const std::string &name, const RunContext &run)
{
    AVIOContext *opened = nullptr;
    const AVIOInterruptCB interrupt = run.control.interrupt();
    if (classifyInput(name).kind != InputKind::localFile ||
        avio_open2(&opened, name.c_str(), AVIO_FLAG_READ, &interrupt, nullptr) < 0) {
        throw CommandFailed("Could not open attachment file " + name + ".");
    }
    const std::unique_ptr<AVIOContext, decltype([](AVIOContext *io) { avio_close(io); })> bytes(
        opened);
    const std::int64_t size = avio_size(bytes.get());
    if (size <= 0 || size > INT_MAX - AV_INPUT_BUFFER_PADDING_SIZE) {
        throw CommandFailed("Could not get size of the attachment " + name + ".");
    }
    OutputStream &stream = file.addStream(AVMEDIA_TYPE_ATTACHMENT);
    AVCodecParameters &codec = *stream.stream->codecpar;
    codec.extradata = static_cast<std::uint8_t *>(
        av_mallocz(static_cast<std::size_t>(size) + AV_INPUT_BUFFER_PADDING_SIZE));
    codec.extradata_size = static_cast<int>(size);
    if (!codec.extradata ||
        avio_read(bytes.get(), codec.extradata, codec.extradata_size) != codec.extradata_size) {
        throw CommandFailed("Could not read the attachment " + name + ".");
    }
    stream.disposition = StreamWords(file, stream)("disposition");
    const auto slash = name.rfind('/');
    const std::string last = slash == std::string::npos ? name : name.substr(slash + 1);
    av_dict_set(&stream.stream->metadata, "filename", last.c_str(), AV_DICT_DONT_OVERWRITE);
}

}

void planOutput(OutputFile &output, const InputFiles &inputs, const RunContext &run)
{
    const FileArguments &arguments = output.arguments();
    output.checkTarget(inputs);
    std::vector<InputStream *> sources = chooseStreams(arguments, *output.context(), inputs, run);
    if (isPlaybackTranscode(arguments)) {
        fitToPlayback(output, inputs, sources);
    }
    for (InputStream *source : sources) {
        addStream(output, *source, run);
    }
    for (const GivenOption &given : arguments.options) {
        if (given.name == "attach") {
            attachFile(output, given.value, run);
        }
    }
    const bool mayBeEmpty = output.context()->oformat->flags & AVFMT_NOSTREAMS;
    if (output.streams().empty() && !mayBeEmpty) {
        av_dump_format(output.context(), output.index(), output.context()->url, 1);
        throw CommandFailed("Output file #" + std::to_string(output.index()) +
                            " does not contain any stream");
    }
    describeOutput(output, inputs);
}

}
