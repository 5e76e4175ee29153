// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/ffmpeg/probe_fields.h"

#include "platform/ffmpeg/av_ptr.h"
#include "platform/ffmpeg/probe_side_data.h"
#include "platform/ffmpeg/safe_input.h"

#include <array>
#include <cinttypes>
#include <cstdio>
#include <string>

namespace veltro::ffmpeg {
namespace {

using Shape = ReportSection::Shape;

template <typename... Values>
std::string printed(const char *format, Values... values)
{
    std::array<char, 64> text{};
    std::snprintf(text.data(), text.size(), format, values...);
    return text.data();
}

void addTextOr(ReportSection &section, const char *name, const char *value, const char *absent)
{
    if (value) {
        section.addText(name, value);
    } else {
        section.addAbsent(name, absent);
    }
}

// A count of zero or less means that the file does not tell.
void addCount(ReportSection &section, const char *name, std::int64_t count)
{
    if (count > 0) {
        section.addText(name, std::to_string(count));
    } else {
        section.addAbsent(name, "N/A");
    }
}

void addRatio(ReportSection &section, const char *name, AVRational ratio, char separator)
{
    section.addText(name, printed("%d%c%d", ratio.num, separator, ratio.den));
}

void addTimestamp(ReportSection &section, const char *name, std::int64_t ticks)
{
    if (ticks == AV_NOPTS_VALUE) {
        section.addAbsent(name, "N/A");
    } else {
        section.addNumber(name, ticks);
    }
}

void addSeconds(ReportSection &section, const char *name, std::int64_t ticks, AVRational base)
{
    if (ticks == AV_NOPTS_VALUE) {
        section.addAbsent(name, "N/A");
    } else {
        section.addText(name, printed("%f", static_cast<double>(ticks) * av_q2d(base)));
    }
}

void addTags(ReportSection &section, const AVDictionary *tags)
{
    if (av_dict_count(tags) == 0) {
        return;
    }
    ReportSection pairs(Shape::pairs, "tags", "TAG");
    const AVDictionaryEntry *tag = nullptr;
    while ((tag = av_dict_get(tags, "", tag, AV_DICT_IGNORE_SUFFIX))) {
        pairs.addText(tag->key, tag->value);
    }
    section.addSection(std::move(pairs));
}

void addCodec(ReportSection &section, const AVCodecParameters &codec)
{
    const AVCodecDescriptor *known = avcodec_descriptor_get(codec.codec_id);
    if (known) {
        section.addText("codec_name", known->name);
        section.addText("codec_long_name", known->long_name ? known->long_name : "unknown");
    } else {
        section.addAbsent("codec_name", "unknown");
        section.addAbsent("codec_long_name", "unknown");
    }
    if (const char *profile = avcodec_profile_name(codec.codec_id, codec.profile)) {
        section.addText("profile", profile);
    } else if (codec.profile != AV_PROFILE_UNKNOWN) {
        section.addText("profile", std::to_string(codec.profile));
    } else {
        section.addAbsent("profile", "unknown");
    }
    addTextOr(section, "codec_type", av_get_media_type_string(codec.codec_type), "unknown");
    std::array<char, AV_FOURCC_MAX_STRING_SIZE> tag{};
    section.addText("codec_tag_string", av_fourcc_make_string(tag.data(), codec.codec_tag));
    section.addText("codec_tag", printed("0x%04" PRIx32, codec.codec_tag));
}

const char *fieldOrderName(AVFieldOrder order)
{
    switch (order) {
    case AV_FIELD_PROGRESSIVE:
        return "progressive";
    case AV_FIELD_TT:
        return "tt";
    case AV_FIELD_BB:
        return "bb";
    case AV_FIELD_TB:
        return "tb";
    case AV_FIELD_BT:
        return "bt";
    case AV_FIELD_UNKNOWN:
        break;
    }
    return nullptr;
}

void addAspect(ReportSection &section, AVFormatContext &input, AVStream &stream)
{
    const AVRational sample = av_guess_sample_aspect_ratio(&input, &stream, nullptr);
    if (sample.num == 0) {
        section.addAbsent("sample_aspect_ratio", "N/A");
        section.addAbsent("display_aspect_ratio", "N/A");
        return;
    }
    constexpr std::int64_t largestTerm = 1 << 20;
    AVRational display{};
    av_reduce(&display.num, &display.den, std::int64_t{stream.codecpar->width} * sample.num,
              std::int64_t{stream.codecpar->height} * sample.den, largestTerm);
    addRatio(section, "sample_aspect_ratio", sample, ':');
    addRatio(section, "display_aspect_ratio", display, ':');
}

// Each of these has a name for "not given", which is nothing to tell.
void addColours(ReportSection &section, const AVCodecParameters &codec)
{
    struct Property {
        const char *name;
        const char *value;
        bool isGiven;
        const char *absent;
    };
    for (const Property &property : {
             Property{"color_range", av_color_range_name(codec.color_range),
                      codec.color_range != AVCOL_RANGE_UNSPECIFIED, "unknown"},
             Property{"color_space", av_color_space_name(codec.color_space),
                      codec.color_space != AVCOL_SPC_UNSPECIFIED, "unknown"},
             Property{"color_transfer", av_color_transfer_name(codec.color_trc),
                      codec.color_trc != AVCOL_TRC_UNSPECIFIED, "unknown"},
             Property{"color_primaries", av_color_primaries_name(codec.color_primaries),
                      codec.color_primaries != AVCOL_PRI_UNSPECIFIED, "unknown"},
             Property{"chroma_location", av_chroma_location_name(codec.chroma_location),
                      codec.chroma_location != AVCHROMA_LOC_UNSPECIFIED, "unspecified"},
         }) {
        addTextOr(section, property.name, property.isGiven ? property.value : nullptr,
                  property.absent);
    }
}

void addVideo(ReportSection &section, AVFormatContext &input, AVStream &stream,
              const AVCodecContext *decoder)
{
    const AVCodecParameters &codec = *stream.codecpar;
    section.addNumber("width", codec.width);
    section.addNumber("height", codec.height);
    if (decoder) {
        section.addNumber("coded_width", decoder->coded_width);
        section.addNumber("coded_height", decoder->coded_height);
        section.addNumber("closed_captions",
                          (decoder->properties & FF_CODEC_PROPERTY_CLOSED_CAPTIONS) != 0);
        section.addNumber("film_grain", (decoder->properties & FF_CODEC_PROPERTY_FILM_GRAIN) != 0);
    }
    section.addNumber("has_b_frames", codec.video_delay);
    addAspect(section, input, stream);
    addTextOr(section, "pix_fmt", av_get_pix_fmt_name(static_cast<AVPixelFormat>(codec.format)),
              "unknown");
    section.addNumber("level", codec.level);
    addColours(section, codec);
    addTextOr(section, "field_order", fieldOrderName(codec.field_order), "unknown");
    if (decoder) {
        section.addNumber("refs", decoder->refs);
    }
}

void addAudio(ReportSection &section, const AVCodecParameters &codec)
{
    addTextOr(section, "sample_fmt",
              av_get_sample_fmt_name(static_cast<AVSampleFormat>(codec.format)), "unknown");
    section.addText("sample_rate", std::to_string(codec.sample_rate));
    section.addNumber("channels", codec.ch_layout.nb_channels);
    if (codec.ch_layout.order == AV_CHANNEL_ORDER_UNSPEC) {
        section.addAbsent("channel_layout", "unknown");
    } else {
        std::array<char, 128> layout{};
        av_channel_layout_describe(&codec.ch_layout, layout.data(), layout.size());
        section.addText("channel_layout", layout.data());
    }
    section.addNumber("bits_per_sample", av_get_bits_per_sample(codec.codec_id));
}

void addSubtitle(ReportSection &section, const AVCodecParameters &codec)
{
    for (const auto &[name, size] : {std::pair{"width", codec.width}, {"height", codec.height}}) {
        if (size) {
            section.addNumber(name, size);
        } else {
            section.addAbsent(name, "N/A");
        }
    }
}

// What a decoder has found in the stream's set-up and marks for show.
void addDecoderFacts(ReportSection &section, const AVCodecContext &decoder)
{
    if (!decoder.codec->priv_class) {
        return;
    }
    const AVOption *option = nullptr;
    while ((option = av_opt_next(decoder.priv_data, option))) {
        std::uint8_t *value = nullptr;
        if ((option->flags & AV_OPT_FLAG_EXPORT) &&
            av_opt_get(decoder.priv_data, option->name, 0, &value) >= 0) {
            const AvTextPtr owned(reinterpret_cast<char *>(value));
            section.addText(option->name, owned.get());
        }
    }
}

void addTimes(ReportSection &section, const AVStream &stream)
{
    addRatio(section, "r_frame_rate", stream.r_frame_rate, '/');
    addRatio(section, "avg_frame_rate", stream.avg_frame_rate, '/');
    addRatio(section, "time_base", stream.time_base, '/');
    addTimestamp(section, "start_pts", stream.start_time);
    addSeconds(section, "start_time", stream.start_time, stream.time_base);
    addTimestamp(section, "duration_ts", stream.duration);
    addSeconds(section, "duration", stream.duration, stream.time_base);
}

void addDisposition(ReportSection &section, int disposition)
{
    ReportSection pairs(Shape::pairs, "disposition", "DISPOSITION");
    for (int bit = 0; bit < 31; ++bit) {
        const int flag = 1 << bit;
        // A bit that has no name in this version of the libraries is nobody's.
        if (const char *name = av_disposition_to_string(flag)) {
            pairs.addNumber(name, (disposition & flag) != 0);
        }
    }
    section.addSection(std::move(pairs));
}

// Only opened, never fed: the set-up data tells what is asked here. A stream without a decoder, or
// with one that refuses the set-up, is described without it.
CodecContextPtr openUnfedDecoder(const AVStream &stream)
{
    const AVCodec *codec = avcodec_find_decoder(stream.codecpar->codec_id);
    if (!codec) {
        av_log(nullptr, AV_LOG_WARNING, "Unsupported codec with id %d for input stream %d\n",
               stream.codecpar->codec_id, stream.index);
        return nullptr;
    }
    CodecContextPtr decoder(avcodec_alloc_context3(codec));
    if (!decoder || avcodec_parameters_to_context(decoder.get(), stream.codecpar) < 0) {
        return nullptr;
    }
    decoder->pkt_timebase = stream.time_base;
    decoder->max_pixels = maxPixels;
    decoder->thread_count = 1;
    if (avcodec_open2(decoder.get(), codec, nullptr) < 0) {
        return nullptr;
    }
    return decoder;
}

ReportSection streamSection(AVFormatContext &input, AVStream &stream)
{
    const AVCodecParameters &codec = *stream.codecpar;
    const CodecContextPtr decoder = openUnfedDecoder(stream);
    ReportSection section(Shape::record, "stream", "STREAM");
    section.addNumber("index", stream.index);
    addCodec(section, codec);
    if (codec.codec_type == AVMEDIA_TYPE_VIDEO) {
        addVideo(section, input, stream, decoder.get());
    } else if (codec.codec_type == AVMEDIA_TYPE_AUDIO) {
        addAudio(section, codec);
    } else if (codec.codec_type == AVMEDIA_TYPE_SUBTITLE) {
        addSubtitle(section, codec);
    }
    if (decoder) {
        addDecoderFacts(section, *decoder);
    }
    if (input.iformat->flags & AVFMT_SHOW_IDS) {
        section.addText("id", printed("0x%x", static_cast<unsigned>(stream.id)));
    } else {
        section.addAbsent("id", "N/A");
    }
    addTimes(section, stream);
    addCount(section, "bit_rate", codec.bit_rate);
    addCount(section, "max_bit_rate", decoder ? decoder->rc_max_rate : 0);
    addCount(section, "bits_per_raw_sample", decoder ? decoder->bits_per_raw_sample : 0);
    addCount(section, "nb_frames", stream.nb_frames);
    section.addAbsent("nb_read_frames", "N/A");
    section.addAbsent("nb_read_packets", "N/A");
    if (codec.extradata_size > 0) {
        section.addNumber("extradata_size", codec.extradata_size);
    }
    addDisposition(section, stream.disposition);
    addTags(section, stream.metadata);
    addSideData(section, stream);
    return section;
}

}

ReportSection describeStreams(AVFormatContext &input, const std::string &selection)
{
    ReportSection list(Shape::list, "streams");
    for (unsigned i = 0; i < input.nb_streams; ++i) {
        AVStream &stream = *input.streams[i];
        if (avformat_match_stream_specifier(&input, &stream, selection.c_str()) > 0) {
            list.addSection(streamSection(input, stream));
        }
    }
    return list;
}

ReportSection describeFormat(AVFormatContext &input)
{
    ReportSection section(Shape::record, "format", "FORMAT");
    section.addText("filename", input.url);
    section.addNumber("nb_streams", input.nb_streams);
    section.addNumber("nb_programs", input.nb_programs);
    section.addText("format_name", input.iformat->name);
    addTextOr(section, "format_long_name", input.iformat->long_name, "unknown");
    addSeconds(section, "start_time", input.start_time, AV_TIME_BASE_Q);
    addSeconds(section, "duration", input.duration, AV_TIME_BASE_Q);
    const std::int64_t size = input.pb ? avio_size(input.pb) : -1;
    addTextOr(section, "size", size >= 0 ? std::to_string(size).c_str() : nullptr, "N/A");
    addCount(section, "bit_rate", input.bit_rate);
    section.addNumber("probe_score", input.probe_score);
    addTags(section, input.metadata);
    return section;
}

}
