// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/ffmpeg/output_file.h"

#include "platform/ffmpeg/av_error.h"
#include "platform/ffmpeg/libav_versions.h"
#include "platform/ffmpeg/muxer_files.h"

#include <algorithm>
#include <string>
#include <utility>

namespace veltro::ffmpeg {
namespace {

OutputContextPtr makeMuxer(const FileArguments &arguments)
{
    const auto format = arguments.value("f");
    const std::string name(format.value_or(""));
    AVFormatContext *muxer = nullptr;
    const int error = avformat_alloc_output_context2(
        &muxer, nullptr, format ? name.c_str() : nullptr, arguments.url.c_str());
    if (!muxer) {
        throw CommandFailed(arguments.url + ": " + errorText(error));
    }
    return OutputContextPtr(muxer);
}

std::string numbered(const OutputFile &file, const OutputStream &stream)
{
    return std::to_string(file.index()) + ":" + std::to_string(stream.stream->index);
}

bool hasTimestamps(const AVPacket &packet)
{
    return packet.dts != noTimestamp && packet.pts != noTimestamp;
}

std::int64_t middleOf(std::int64_t a, std::int64_t b, std::int64_t c)
{
    return std::max(std::min(a, b), std::min(std::max(a, b), c));
}

}

OutputFile::OutputFile(const FileArguments &arguments, int index, const RunContext &run)
    : m_run(run)
    , m_arguments(arguments)
    , m_index(index)
    , m_libraryOptions(sortLibraryOptions(arguments))
    , m_range(timeRangeOf(arguments))
{
    const InputName name = classifyInput(arguments.url);
    if (name.kind == InputKind::standard) {
        throw CommandFailed("Writing to a pipe is not supported by this program");
    }
    m_context = makeMuxer(arguments);
    m_context->opaque = &run.log;
    m_context->interrupt_callback = run.control.interrupt();
    m_context->max_delay = static_cast<int>(0.7 * AV_TIME_BASE);
    if (const auto delay = arguments.value("muxdelay")) {
        m_context->max_delay =
            static_cast<int>(parseReal("muxdelay", std::string(*delay)) * AV_TIME_BASE);
    }
    if (const auto preload = arguments.value("muxpreload")) {
        const double seconds = parseReal("muxpreload", std::string(*preload));
        av_dict_set_int(DictionaryLoan(m_libraryOptions.format), "preload",
                        static_cast<std::int64_t>(seconds * AV_TIME_BASE), 0);
    }
    if (const auto limit = arguments.value("fs")) {
        m_sizeLimit = parseInteger("fs", std::string(*limit), 0, m_sizeLimit);
    }
    if (m_range.duration) {
        m_context->duration = *m_range.duration;
    }
    if (arguments.isOn("bitexact")) {
        m_context->flags |= AVFMT_FLAG_BITEXACT;
    }
    if (name.kind != InputKind::localFile) {
        throw CommandFailed("Writing to " + arguments.url + " is not supported by this program");
    }
    m_target = std::make_unique<WrittenFile>(name.path);
}

OutputFile::~OutputFile()
{
    if (m_context->pb && !opensItself()) {
        avio_closep(&m_context->pb); // whatever is lost here is removed with the file
    }
}

void OutputFile::checkTarget(const InputFiles &inputs) const
{
    const auto refusal = refusalToWrite(m_arguments.url, m_target->path(), inputs);
    if (refusal) {
        throw CommandFailed(*refusal);
    }
    if (!m_run.overwrites && m_target->exists()) {
        throw CommandFailed("File '" + m_arguments.url + "' already exists. Exiting.");
    }
}

OutputStream &OutputFile::addStream(AVMediaType type)
{
    AVStream *stream = avformat_new_stream(m_context.get(), nullptr);
    if (!stream) {
        throw CommandFailed("Could not alloc stream.");
    }
    stream->codecpar->codec_type = type;
    OutputStream &added = *m_streams.emplace_back(std::make_unique<OutputStream>());
    added.stream = stream;
    return added;
}

void OutputFile::initialiseFilter(OutputStream &stream)
{
    AVBSFContext *filter = stream.bitstreamFilter.get();
    if (!filter) {
        return;
    }
    int error = avcodec_parameters_copy(filter->par_in, stream.stream->codecpar);
    filter->time_base_in = stream.stream->time_base;
    if (error >= 0) {
        error = av_bsf_init(filter);
    }
    if (error >= 0) {
        error = avcodec_parameters_copy(stream.stream->codecpar, filter->par_out);
    }
    if (error < 0) {
        throw CommandFailed(
            "Error initializing bitstream filter: " + std::string(filter->filter->name) +
            "\nError initializing output stream " + numbered(*this, stream) + " -- ");
    }
    stream.stream->time_base = filter->time_base_out;
}

void OutputFile::streamReady(OutputStream &stream)
{
    initialiseFilter(stream);
    stream.isReady = true;
    const bool allReady = std::all_of(m_streams.begin(), m_streams.end(),
                                      [](const auto &other) { return other->isReady; });
    if (allReady) {
        begin();
    }
}

void OutputFile::begin()
{
    openTarget();
    const int error =
        avformat_write_header(m_context.get(), DictionaryLoan(m_libraryOptions.format));
    m_run.control.check();
    if (error < 0) {
        checkRefusal();
        throw CommandFailed("Could not write header for output file #" + std::to_string(m_index) +
                            " (incorrect codec parameters ?): " + errorText(error));
    }
    m_hasBegun = true;
    av_dump_format(m_context.get(), m_index, m_context->url, 1);
    for (const auto &stream : m_streams) {
        // Nothing has been timed yet: the muxer's own time base saves a conversion.
        if (stream->waiting.empty()) {
            stream->packetBase = stream->stream->time_base;
        }
        for (PacketPtr &packet : std::exchange(stream->waiting, {})) {
            mux(*stream, *packet);
        }
    }
}

void OutputFile::openTarget()
{
    if (opensItself()) {
        MuxerFiles::attachTo(*m_context);
        return;
    }
    const int error =
        avio_open2(&m_context->pb, m_arguments.url.c_str(), AVIO_FLAG_WRITE,
                   &m_context->interrupt_callback, DictionaryLoan(m_libraryOptions.format));
    if (error < 0) {
        throw CommandFailed(m_arguments.url + ": " + errorText(error));
    }
    m_target->opened();
}

void OutputFile::write(OutputStream &stream, AVPacket &packet)
{
    AVBSFContext *filter = stream.bitstreamFilter.get();
    if (!filter) {
        queueOrMux(stream, packet);
        return;
    }
    const int error = av_bsf_send_packet(filter, &packet);
    if (error < 0) {
        av_packet_unref(&packet);
        m_run.error("Error applying bitstream filters to an output packet for stream #" +
                    numbered(*this, stream) + ".");
        return;
    }
    drainFilter(stream, packet);
}

void OutputFile::drainFilter(OutputStream &stream, AVPacket &packet)
{
    int error = 0;
    while ((error = av_bsf_receive_packet(stream.bitstreamFilter.get(), &packet)) >= 0) {
        queueOrMux(stream, packet);
    }
    if (error != AVERROR(EAGAIN) && error != AVERROR_EOF) {
        m_run.error("Error applying bitstream filters to an output packet for stream #" +
                    numbered(*this, stream) + ".");
    }
}

void OutputFile::finish(OutputStream &stream)
{
    if (stream.isFinished) {
        return;
    }
    if (stream.bitstreamFilter && stream.isReady) {
        const PacketPtr packet(av_packet_alloc());
        if (packet && av_bsf_send_packet(stream.bitstreamFilter.get(), nullptr) >= 0) {
            drainFilter(stream, *packet);
        }
    }
    stream.isFinished = true;
    // With -shortest the other streams end where this one did.
    if (m_arguments.isOn("shortest") && stream.type() != AVMEDIA_TYPE_ATTACHMENT) {
        const std::int64_t length = av_rescale_q(stream.duration, stream.packetBase, microseconds);
        m_range.duration = std::min(m_range.duration.value_or(length), length);
    }
}

void OutputFile::queueOrMux(OutputStream &stream, AVPacket &packet)
{
    const bool isCounted = stream.isCopied || stream.type() != AVMEDIA_TYPE_VIDEO;
    if (isCounted && stream.packets >= stream.packetLimit) {
        av_packet_unref(&packet);
        return;
    }
    ++stream.packets;
    if (m_hasBegun) {
        mux(stream, packet);
    } else {
        enqueue(stream, packet);
    }
}

void OutputFile::enqueue(OutputStream &stream, AVPacket &packet)
{
    stream.waitingBytes += static_cast<std::size_t>(packet.size);
    const bool isTooMuch = stream.waitingBytes > stream.waitingBytesLimit &&
                           stream.waiting.size() >= stream.waitingCountLimit;
    PacketPtr kept(isTooMuch ? nullptr : av_packet_alloc());
    if (!kept || av_packet_make_refcounted(&packet) < 0) {
        av_packet_unref(&packet);
        throw CommandFailed("Too many packets buffered for output stream " +
                            numbered(*this, stream) + ".");
    }
    av_packet_move_ref(kept.get(), &packet);
    stream.waiting.push_back(std::move(kept));
}

void OutputFile::mux(OutputStream &stream, AVPacket &packet)
{
    av_packet_rescale_ts(&packet, stream.packetBase, stream.stream->time_base);
    if (!(m_context->oformat->flags & AVFMT_NOTIMESTAMPS)) {
        straighten(stream, packet);
    }
    stream.lastDts = packet.dts;
    stream.bytes += packet.size;
    packet.stream_index = stream.stream->index;
    const int error = av_interleaved_write_frame(m_context.get(), &packet);
    if (error < 0) {
        av_packet_unref(&packet);
        m_run.control.check();
        checkRefusal();
        throw CommandFailed("av_interleaved_write_frame(): " + errorText(error));
    }
    reportProgress(stream);
}

// Decoding times must rise and lie before the time of showing; files do not always keep to it.
void OutputFile::straighten(OutputStream &stream, AVPacket &packet) const
{
    const std::int64_t last = stream.lastDts;
    if (hasTimestamps(packet) && packet.dts > packet.pts) {
        m_run.warn("Invalid DTS: " + std::to_string(packet.dts) +
                   " PTS: " + std::to_string(packet.pts) + " in output stream " +
                   numbered(*this, stream) + ", replacing by guess");
        packet.pts = packet.dts = middleOf(packet.pts, packet.dts, last + 1);
    }
    if (packet.dts == noTimestamp || last == noTimestamp || stream.type() == AVMEDIA_TYPE_DATA ||
        stream.type() == AVMEDIA_TYPE_UNKNOWN) {
        return;
    }
    const bool mayRepeat = m_context->oformat->flags & AVFMT_TS_NONSTRICT;
    const std::int64_t lowest = mayRepeat ? last : last + 1;
    if (packet.dts >= lowest) {
        return;
    }
    if (lowest - packet.dts > 2 || stream.type() == AVMEDIA_TYPE_VIDEO) {
        m_run.warn("Non-monotonous DTS in output stream " + numbered(*this, stream) +
                   "; previous: " + std::to_string(last) + ", current: " +
                   std::to_string(packet.dts) + "; changing to " + std::to_string(lowest) +
                   ". This may result in incorrect timestamps in the output file.");
    }
    if (packet.pts >= packet.dts) {
        packet.pts = std::max(packet.pts, lowest);
    }
    packet.dts = lowest;
}

void OutputFile::reportProgress(const OutputStream &stream) const
{
    if (stream.lastDts != noTimestamp) {
        m_run.control.setProgress(
            size(), av_rescale_q(stream.lastDts, stream.stream->time_base, microseconds));
    }
}

void OutputFile::complete()
{
    if (!m_hasBegun) {
        throw CommandFailed("Nothing was written into output file " + std::to_string(m_index) +
                            " (" + m_arguments.url +
                            "), because at least one of its streams received no packets.");
    }
    const int error = av_write_trailer(m_context.get());
    m_run.control.check();
    if (error < 0) {
        checkRefusal();
        throw CommandFailed("Error writing trailer of " + m_arguments.url + ": " +
                            errorText(error));
    }
    if (!opensItself()) {
        // What the file system could not take is often said only now.
        if (const int closing = avio_closep(&m_context->pb); closing < 0) {
            throw CommandFailed("Error closing file " + m_arguments.url + ": " +
                                errorText(closing));
        }
    }
    m_target->keep();
}

// A muxer that was kept from an input knows no more than that it was not permitted.
void OutputFile::checkRefusal() const
{
    const std::optional<std::string> refusal = m_run.control.muxerFiles()->refusal();
    if (refusal) {
        throw CommandFailed(*refusal);
    }
}

// Formats of pictures open a file for each, or the one that they write again and again.
bool OutputFile::opensItself() const
{
    return m_context->oformat->flags & AVFMT_NOFILE;
}

bool OutputFile::isFull() const
{
    return m_context->pb && avio_tell(m_context->pb) >= m_sizeLimit;
}

std::int64_t OutputFile::size() const
{
    return m_context->pb ? avio_tell(m_context->pb) : 0;
}

}
