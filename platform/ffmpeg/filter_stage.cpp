// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/ffmpeg/filter_stage.h"

#include "platform/ffmpeg/av_error.h"
#include "platform/ffmpeg/filter_chain.h"
#include "platform/ffmpeg/libav_versions.h"

#include <algorithm>
#include <cstring>

namespace veltro::ffmpeg {
namespace {

void checkGraph(int error)
{
    if (error < 0) {
        throw CommandFailed("Error reinitializing filters!\nError while filtering: " +
                            errorText(error));
    }
}

template <typename Object>
Object *checkMade(Object *made)
{
    checkGraph(made ? 0 : AVERROR(ENOMEM));
    return made;
}

std::string layoutText(const AVChannelLayout &layout)
{
    std::array<char, 256> text{};
    const int error = av_channel_layout_describe(&layout, text.data(), text.size());
    return error < 0 ? std::string() : std::string(text.data());
}

std::optional<std::array<std::int32_t, 9>> rotationOf(const AVStream &stream)
{
    const std::int32_t *matrix = displayMatrixOf(stream);
    if (!matrix) {
        return std::nullopt;
    }
    std::array<std::int32_t, 9> copy{};
    std::copy_n(matrix, copy.size(), copy.begin());
    return copy;
}

std::string joined(const AVDictionary *options)
{
    std::string text;
    const AVDictionaryEntry *entry = nullptr;
    while ((entry = av_dict_get(options, "", entry, AV_DICT_IGNORE_SUFFIX))) {
        text += (text.empty() ? "" : ":") + std::string(entry->key) + "=" + entry->value;
    }
    return text;
}

}

bool FrameShape::isLike(const FrameShape &other) const
{
    return format == other.format && width == other.width && height == other.height &&
           sampleRate == other.sampleRate && channelLayout == other.channelLayout &&
           channels == other.channels && rotation == other.rotation;
}

FrameShape FrameShape::of(const AVFrame &frame, AVMediaType type)
{
    FrameShape shape;
    shape.format = frame.format;
    if (type == AVMEDIA_TYPE_AUDIO) {
        shape.sampleRate = frame.sample_rate;
        shape.channels = frame.ch_layout.nb_channels;
        shape.channelLayout = layoutText(frame.ch_layout);
        return shape;
    }
    shape.width = frame.width;
    shape.height = frame.height;
    shape.pixel = frame.sample_aspect_ratio;
    shape.colorSpace = frame.colorspace;
    shape.colorRange = frame.color_range;
    const AVFrameSideData *matrix = av_frame_get_side_data(&frame, AV_FRAME_DATA_DISPLAYMATRIX);
    if (matrix && matrix->size >= sizeof(std::int32_t) * 9) {
        std::memcpy(shape.rotation.emplace().data(), matrix->data, sizeof(std::int32_t) * 9);
    }
    return shape;
}

FrameShape FrameShape::of(const AVCodecParameters &codec)
{
    FrameShape shape;
    shape.format = codec.format;
    shape.width = codec.width;
    shape.height = codec.height;
    shape.pixel = codec.sample_aspect_ratio;
    shape.sampleRate = codec.sample_rate;
    shape.channels = codec.ch_layout.nb_channels;
    shape.channelLayout = layoutText(codec.ch_layout);
    return shape;
}

FilterStage::FilterStage(const InputFile &input, const OutputFile &output,
                         const OutputStream &stream, const RunContext &run)
    : m_input(input)
    , m_source(*stream.source)
    , m_output(output)
    , m_stream(stream)
    , m_run(run)
    , m_usualRate(av_guess_frame_rate(m_source.file, m_source.stream, nullptr))
    , m_rotation(rotationOf(*m_source.stream))
{}

void FilterStage::build(const FrameShape &shape, AVRational base)
{
    m_sink = m_sourceFilter = nullptr;
    m_graph.reset(checkMade(avfilter_graph_alloc()));
    m_graph->opaque = &m_run.log;
    m_shape = shape;
    std::string scaling = joined(m_stream.encode.scaler.get());
    if (scaling.find("flags=") == std::string::npos) {
        scaling += scaling.empty() ? "flags=bicubic" : ":flags=bicubic";
    }
    m_graph->scale_sws_opts = av_strdup(scaling.c_str());
    av_opt_set(m_graph.get(), "aresample_swr_opts", joined(m_stream.encode.resampler.get()).c_str(),
               0);
    makeSource(shape, base);
    makeSink();
    connect(chain(shape));
    checkGraph(avfilter_graph_config(m_graph.get(), nullptr));
    if (!m_result) {
        rememberResult();
    }
}

void FilterStage::makeSource(const FrameShape &shape, AVRational base)
{
    const AVFilter *filter = avfilter_get_by_name(isVideo() ? "buffer" : "abuffer");
    m_sourceFilter = checkMade(avfilter_graph_alloc_filter(m_graph.get(), filter, "in"));
    const std::unique_ptr<AVBufferSrcParameters, AvMemoryDeleter> parameters(
        checkMade(av_buffersrc_parameters_alloc()));
    parameters->format = shape.format;
    parameters->time_base = base;
    if (isVideo()) {
        parameters->width = shape.width;
        parameters->height = shape.height;
        parameters->sample_aspect_ratio = shape.pixel.den ? shape.pixel : AVRational{0, 1};
        parameters->frame_rate = m_source.frameRate.num ? m_source.frameRate : m_usualRate;
#if LIBAVFILTER_VERSION_INT >= AV_VERSION_INT(9, 16, 100)
        parameters->color_space = shape.colorSpace;
        parameters->color_range = shape.colorRange;
#endif
    } else {
        parameters->sample_rate = shape.sampleRate;
        if (av_channel_layout_from_string(&parameters->ch_layout, shape.channelLayout.c_str()) <
            0) {
            av_channel_layout_default(&parameters->ch_layout, shape.channels);
        }
    }
    const int error = av_buffersrc_parameters_set(m_sourceFilter, parameters.get());
    av_channel_layout_uninit(&parameters->ch_layout);
    checkGraph(error);
    checkGraph(avfilter_init_str(m_sourceFilter, nullptr));
}

void FilterStage::makeSink()
{
    const AVFilter *filter = avfilter_get_by_name(isVideo() ? "buffersink" : "abuffersink");
    checkGraph(
        avfilter_graph_create_filter(&m_sink, filter, "out", nullptr, nullptr, m_graph.get()));
}

void FilterStage::connect(const std::string &chain)
{
    // The names are seen from the chain: what goes in, what comes out.
    FilterEndsPtr from(checkMade(avfilter_inout_alloc()));
    FilterEndsPtr to(checkMade(avfilter_inout_alloc()));
    from->name = av_strdup("in");
    from->filter_ctx = m_sourceFilter;
    to->name = av_strdup("out");
    to->filter_ctx = m_sink;
    AVFilterInOut *inputs = to.release();
    AVFilterInOut *outputs = from.release();
    const int error =
        avfilter_graph_parse_ptr(m_graph.get(), chain.c_str(), &inputs, &outputs, nullptr);
    to.reset(inputs);
    from.reset(outputs);
    checkGraph(error);
}

// The encoder is opened for what the first graph gives.
void FilterStage::rememberResult()
{
    FrameShape &result = m_result.emplace();
    result.format = av_buffersink_get_format(m_sink);
    if (isVideo()) {
        result.width = av_buffersink_get_w(m_sink);
        result.height = av_buffersink_get_h(m_sink);
        return;
    }
    result.sampleRate = av_buffersink_get_sample_rate(m_sink);
    AVChannelLayout layout = {};
    if (av_buffersink_get_ch_layout(m_sink, &layout) >= 0) {
        result.channelLayout = layoutText(layout);
    }
    av_channel_layout_uninit(&layout);
}

bool FilterStage::push(AVFrame &frame)
{
    const int error = av_buffersrc_add_frame_flags(m_sourceFilter, &frame, AV_BUFFERSRC_FLAG_PUSH);
    if (error == AVERROR_EOF) {
        return false;
    }
    if (error < 0) {
        throw CommandFailed("Failed to inject frame into filter network: " + errorText(error));
    }
    return true;
}

void FilterStage::end()
{
    const int error = av_buffersrc_add_frame_flags(m_sourceFilter, nullptr, AV_BUFFERSRC_FLAG_PUSH);
    if (error < 0 && error != AVERROR_EOF) {
        throw CommandFailed("Error marking filters as finished");
    }
}

bool FilterStage::pull(AVFrame &frame)
{
    const int error = av_buffersink_get_frame(m_sink, &frame);
    if (error < 0 && error != AVERROR(EAGAIN) && error != AVERROR_EOF) {
        throw CommandFailed("Error while filtering: " + errorText(error));
    }
    return error >= 0;
}

std::string FilterStage::chain(const FrameShape &shape) const
{
    FilterChain chain;
    if (isVideo() && m_source.rotates) {
        const auto &matrix = shape.rotation ? shape.rotation : m_rotation;
        chain.add(rotationFilter(matrix ? matrix->data() : nullptr));
    }
    chain.add(inputTrim());
    chain.add(m_stream.encode.filters);
    if (isVideo()) {
        chain.add(cropping(shape));
        const int width = m_result ? m_result->width : m_stream.encode.width;
        const int height = m_result ? m_result->height : m_stream.encode.height;
        if (width || height) {
            chain.add("scale=" + std::to_string(width) + ":" + std::to_string(height));
        }
        chain.add(pixelFormats());
    } else {
        chain.add(soundFormats());
    }
    chain.add(outputTrim());
    return chain.textOr(isVideo() ? "null" : "anull");
}

// Seeking lands on a key frame: what lies before the wanted start is decoded and thrown away.
std::string FilterStage::inputTrim() const
{
    std::optional<std::int64_t> start;
    if (m_input.range().start && m_input.isAccurate()) {
        start = 0;
        if (m_run.copiesTimestamps) {
            start = m_input.range().start;
            if (!m_run.startsAtZero && m_input.context()->start_time != noTimestamp) {
                start = addTime(*start, m_input.context()->start_time);
            }
        }
    }
    return trimFilter(isVideo(), start, m_input.range().duration);
}

std::string FilterStage::outputTrim() const
{
    return trimFilter(isVideo(), m_output.range().start, m_output.range().duration);
}

std::string FilterStage::cropping(const FrameShape &shape) const
{
    const bool isOdd = (shape.width | shape.height) & 1;
    return m_stream.encode.cropsToEven && isOdd ? "crop=trunc(iw/2)*2:trunc(ih/2)*2:0:0"
                                                : std::string();
}

std::string FilterStage::pixelFormats() const
{
    const EncodeSettings &encode = m_stream.encode;
    if (m_result) {
        return formatFilter({static_cast<AVPixelFormat>(m_result->format)});
    }
    if (encode.deviceFormat != AV_PIX_FMT_NONE) {
        return formatFilter({encode.deviceFormat});
    }
    return encode.pixelFormat == AV_PIX_FMT_NONE
               ? formatFilter(encode.encoder)
               : formatFilter({closestFormat(encode.encoder, encode.pixelFormat)});
}

std::string FilterStage::soundFormats() const
{
    SoundWish wish;
    const EncodeSettings &encode = m_stream.encode;
    wish.format = encode.sampleFormat;
    wish.rate = encode.sampleRate;
    wish.layout = encode.channelLayout;
    wish.channels = encode.channels;
    if (m_result) {
        wish.format = static_cast<AVSampleFormat>(m_result->format);
        wish.rate = m_result->sampleRate;
        wish.layout = m_result->channelLayout;
    }
    return soundFormatFilter(encode.encoder, wish);
}

}
