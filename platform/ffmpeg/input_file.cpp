// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/ffmpeg/input_file.h"

#include "platform/ffmpeg/av_error.h"
#include "platform/ffmpeg/codec_names.h"
#include "platform/ffmpeg/input_open.h"
#include "platform/ffmpeg/libav_versions.h"

#include <algorithm>
#include <climits>
#include <cstring>
#include <thread>

namespace veltro::ffmpeg {
namespace {

constexpr auto pollInterval = std::chrono::milliseconds(10);

bool isSwitchedOff(const FileArguments &arguments, AVMediaType type)
{
    return (type == AVMEDIA_TYPE_VIDEO && arguments.isOn("vn")) ||
           (type == AVMEDIA_TYPE_AUDIO && arguments.isOn("an")) ||
           (type == AVMEDIA_TYPE_SUBTITLE && arguments.isOn("sn")) ||
           (type == AVMEDIA_TYPE_DATA && arguments.isOn("dn"));
}

AVDiscard parseDiscard(const std::string &text)
{
    const AVClass *type = avcodec_get_class();
    const AVOption *option =
        av_opt_find(static_cast<void *>(&type), "skip_frame", nullptr, 0, AV_OPT_SEARCH_FAKE_OBJ);
    int value = 0;
    if (!option || av_opt_eval_int(static_cast<void *>(&type), option, text.c_str(), &value) < 0) {
        throw CommandFailed("Error parsing discard " + text + ".");
    }
    return static_cast<AVDiscard>(value);
}

// Some containers keep data beside a stream that decoders look for in a packet.
void attachSideData(AVPacket &packet, const AVStream &stream)
{
    if (parametersHoldSideData) {
        return;
    }
    for (const AVPacketSideData &data : sideDataOf(stream)) {
        if (data.type == AV_PKT_DATA_DISPLAYMATRIX ||
            av_packet_get_side_data(&packet, data.type, nullptr)) {
            continue;
        }
        if (std::uint8_t *copy = av_packet_new_side_data(&packet, data.type, data.size)) {
            std::memcpy(copy, data.data, data.size);
        }
    }
}

}

InputFile::InputFile(const FileArguments &arguments, int index, const RunContext &run)
    : m_run(run)
    , m_url(arguments.url)
    , m_index(index)
    , m_isAccurate(arguments.value("accurate_seek").value_or("1") != "0")
    , m_isPaced(arguments.isOn("re"))
    , m_range(timeRangeOf(arguments))
{
    LibraryOptions options = sortLibraryOptions(arguments);
    m_context = openInput(arguments, options, run);
    m_sources.emplace(*m_context);
    forceDecoders(arguments);
    if (readStreamInformation(*m_context) < 0) {
        m_run.control.check();
        if (m_context->nb_streams == 0) {
            throw CommandFailed(m_url + ": could not find codec parameters");
        }
        m_run.error(m_url + ": could not find codec parameters");
    }
    settleStart(arguments);
    seek(arguments);
    readStreams(arguments, options);
    av_dump_format(m_context.get(), index, m_url.c_str(), 0);
    m_timeline.emplace(m_context.get(), m_offset, run.copiesTimestamps);
    const auto rounds = arguments.value("stream_loop");
    m_loop.emplace(rounds ? parseInteger("stream_loop", std::string(*rounds), -1, INT_MAX) : 0,
                   *m_context);
}

void InputFile::forceDecoders(const FileArguments &arguments)
{
    for (unsigned i = 0; i < m_context->nb_streams; ++i) {
        AVStream &stream = *m_context->streams[i];
        if (const auto name = streamValue(arguments, "c", m_context.get(), &stream)) {
            stream.codecpar->codec_id =
                findCodec(*name, stream.codecpar->codec_type, CodecUse::decode).id;
        }
    }
}

// A start that is counted from the end needs to know where that is.
void InputFile::settleStart(const FileArguments &arguments)
{
    const auto text = arguments.value("sseof");
    if (!text) {
        return;
    }
    const std::int64_t fromEnd = parseDuration("sseof", std::string(*text));
    if (m_range.start) {
        m_run.warn("Cannot use -ss and -sseof both, using -ss for " + m_url);
    } else if (fromEnd >= 0) {
        throw CommandFailed("-sseof value must be negative; aborting");
    } else if (m_context->duration <= 0) {
        m_run.warn("Cannot use -sseof, duration of " + m_url + " not known");
    } else if (addTime(fromEnd, m_context->duration) < 0) {
        m_run.warn("-sseof value seeks to before start of file " + m_url + "; ignored");
    } else {
        m_range.start = addTime(fromEnd, m_context->duration);
    }
}

void InputFile::seek(const FileArguments &arguments)
{
    const bool fileKnowsStart = m_context->start_time != noTimestamp;
    std::int64_t position = m_range.start.value_or(0);
    if (arguments.value("seek_timestamp").value_or("0") == "0" && fileKnowsStart) {
        position = addTime(position, m_context->start_time);
    }
    if (m_range.start) {
        std::int64_t target = position;
        const auto *first = m_context->streams;
        const bool reorders =
            std::any_of(first, first + m_context->nb_streams,
                        [](const AVStream *stream) { return stream->codecpar->video_delay; });
        // Where seeking goes by decoding time, frames that are shown at the target are decoded
        // some frames before it.
        if (!(m_context->iformat->flags & AVFMT_SEEK_TO_PTS) && reorders) {
            target -= 3 * AV_TIME_BASE / 23;
        }
        if (avformat_seek_file(m_context.get(), -1, noTimestamp, target, target, 0) < 0) {
            m_run.warn(m_url + ": could not seek to position " +
                       std::to_string(static_cast<double>(position) / AV_TIME_BASE));
        }
    }
    std::int64_t base = position;
    if (m_run.copiesTimestamps) {
        base = m_run.startsAtZero && fileKnowsStart ? m_context->start_time : 0;
    }
    const auto extra = arguments.value("itsoffset");
    const std::int64_t asked = extra ? parseDuration("itsoffset", std::string(*extra)) : 0;
    m_offset = subtractTime(asked, base);
}

void InputFile::readStreams(const FileArguments &arguments, const LibraryOptions &options)
{
    m_streams.reserve(m_context->nb_streams);
    for (unsigned i = 0; i < m_context->nb_streams; ++i) {
        describeStream(arguments, options, *m_context->streams[i]);
    }
}

void InputFile::describeStream(const FileArguments &arguments, const LibraryOptions &options,
                               AVStream &stream)
{
    const auto value = [&](std::string_view name) {
        return streamValue(arguments, name, m_context.get(), &stream);
    };
    InputStream &added = m_streams.emplace_back();
    added.file = m_context.get();
    added.stream = &stream;
    added.fileIndex = m_index;
    stream.discard = AVDISCARD_ALL;
    if (const auto tag = value("tag")) {
        stream.codecpar->codec_tag = parseTag(*tag);
    }
    const auto codec = value("c");
    added.decoder = codec ? &findCodec(*codec, added.type(), CodecUse::decode)
                          : avcodec_find_decoder(stream.codecpar->codec_id);
    added.decoderOptions =
        codecOptionsFor(options.codec.get(), m_context.get(), &stream, added.decoder);
    if (const auto scale = value("itsscale")) {
        added.timestampScale = parseReal("itsscale", *scale);
    }
    if (const auto rate = value("r"); rate && added.type() == AVMEDIA_TYPE_VIDEO) {
        if (av_parse_video_rate(&added.frameRate, rate->c_str()) < 0) {
            throw CommandFailed("Error parsing framerate " + *rate + ".");
        }
        added.clock.setFrameRate(added.frameRate);
    }
    added.rotates = value("autorotate").value_or("1") != "0";
    added.isDisabled = isSwitchedOff(arguments, added.type());
    if (const auto discard = value("discard")) {
        added.discard = parseDiscard(*discard);
        added.isDisabled = added.isDisabled || added.discard == AVDISCARD_ALL;
    }
    AVChannelLayout &layout = stream.codecpar->ch_layout;
    if (added.type() == AVMEDIA_TYPE_AUDIO && layout.order == AV_CHANNEL_ORDER_UNSPEC &&
        layout.nb_channels > 0) {
        av_channel_layout_default(&layout, layout.nb_channels);
    }
}

void InputFile::use(InputStream &stream, bool copied)
{
    stream.isUsed = true;
    stream.stream->discard = stream.discard;
    stream.clock.begin(*stream.stream, copied);
}

void InputFile::skipUnusedPrograms()
{
    for (unsigned i = 0; i < m_context->nb_programs; ++i) {
        AVProgram &program = *m_context->programs[i];
        const unsigned *first = program.stream_index;
        const bool isUsed =
            std::any_of(first, first + program.nb_stream_indexes, [this](unsigned index) {
                return index < m_streams.size() && m_streams[index].isUsed;
            });
        program.discard = isUsed ? AVDISCARD_DEFAULT : AVDISCARD_ALL;
    }
}

bool InputFile::read(AVPacket &packet)
{
    if (m_isPaced) {
        keepPace();
    }
    while (!readUsed(packet)) {
        if (!m_loop->beginAgain(*m_context)) {
            return false;
        }
    }
    m_loop->place(packet);
    InputStream &stream = m_streams[static_cast<std::size_t>(packet.stream_index)];
    if (packet.flags & AV_PKT_FLAG_CORRUPT) {
        const std::string text =
            m_url + ": corrupt input packet in stream " + std::to_string(packet.stream_index);
        if (m_run.stopsOnError) {
            throw CommandFailed(text);
        }
        m_run.warn(text);
    }
    if (!stream.sawPacket) {
        stream.sawPacket = true;
        attachSideData(packet, *stream.stream);
    }
    m_timeline->correct(packet, {stream.clock, stream.isUnwrapped, stream.timestampScale});
    stream.clock.advance(packet);
    m_furthest = std::max(m_furthest, stream.clock.position());
    return true;
}

bool InputFile::readUsed(AVPacket &packet)
{
    for (;;) {
        const int error = readAny(packet);
        m_run.control.check();
        if (error == AVERROR_EOF) {
            return false;
        }
        if (error < 0) {
            m_run.error(m_url + ": " + errorText(error));
            if (m_run.stopsOnError) {
                throw CommandFailed(m_url + ": " + errorText(error));
            }
            return false;
        }
        const auto index = static_cast<std::size_t>(packet.stream_index);
        if (index < m_streams.size() && m_streams[index].isUsed) {
            return true;
        }
        av_packet_unref(&packet); // of a stream that appeared later, or that nobody wants
    }
}

int InputFile::readAny(AVPacket &packet)
{
    for (;;) {
        const int error = av_read_frame(m_context.get(), &packet);
        if (error != AVERROR(EAGAIN)) {
            return error;
        }
        m_run.control.check();
        std::this_thread::sleep_for(pollInterval);
    }
}

void InputFile::keepPace()
{
    using std::chrono::steady_clock;
    if (!m_begun) {
        m_begun = steady_clock::now();
    }
    const auto due = *m_begun + std::chrono::microseconds(m_furthest);
    while (steady_clock::now() < due) {
        m_run.control.check();
        std::this_thread::sleep_for(pollInterval);
    }
}

std::optional<std::string> refusalToWrite(const std::string &url, const std::string &path,
                                          const InputFiles &inputs)
{
    for (std::size_t i = 0; i < inputs.size(); ++i) {
        if (inputs[i]->readsFrom(path)) {
            return "Output " + url + " same as Input #" + std::to_string(i) +
                   " - exiting\nFFmpeg cannot edit existing files in-place.";
        }
    }
    return std::nullopt;
}

}
