// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/ffmpeg/still_frame.h"

#include "platform/ffmpeg/known_colours.h"
#include "platform/ffmpeg/libav_versions.h"
#include "platform/ffmpeg/safe_input.h"
#include "platform/ffmpeg/time_limit.h"
#include "platform/ffmpeg/timestamp.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <limits>
#include <span>
#include <utility>

namespace veltro::ffmpeg {
namespace {

// Pictures from one key frame to the wanted one, at most: ten seconds at 120 a second.
constexpr int mostPictures = 1200;
// Seconds from the beginning; more is the end of any file.
constexpr double longestWay = 1e9;
// Below this many pixels, starting threads takes longer than they save.
constexpr std::int64_t fewPixels = std::int64_t{640} * 480;

bool isFilm(const AVStream &stream)
{
    constexpr int noFilm = AV_DISPOSITION_ATTACHED_PIC | AV_DISPOSITION_TIMED_THUMBNAILS;
    return stream.codecpar->codec_type == AVMEDIA_TYPE_VIDEO && !(stream.disposition & noFilm);
}

AVStream *firstFilm(const AVFormatContext &input)
{
    for (AVStream *stream : std::span(input.streams, input.nb_streams)) {
        if (isFilm(*stream) && avcodec_find_decoder(stream->codecpar->codec_id)) {
            return stream;
        }
    }
    return nullptr;
}

// Most containers tell in their first bytes what a decoder needs.
AVStream *chooseFilm(AVFormatContext &input)
{
    AVStream *film = firstFilm(input);
    const bool isTold = film && film->codecpar->width > 0 && film->codecpar->height > 0;
    if (isTold && !(input.ctx_flags & AVFMTCTX_NOHEADER)) {
        return film;
    }
    return readStreamInformation(input) < 0 ? nullptr : firstFilm(input);
}

CodecContextPtr openFilm(const AVStream &film, SessionLog *log)
{
    const AVCodec *decoder = avcodec_find_decoder(film.codecpar->codec_id);
    CodecContextPtr codec(avcodec_alloc_context3(decoder));
    if (!codec || avcodec_parameters_to_context(codec.get(), film.codecpar) < 0) {
        return nullptr;
    }
    const std::int64_t pixels = std::int64_t{codec->width} * codec->height;
    codec->opaque = log;
    codec->pkt_timebase = film.time_base;
    codec->max_pixels = maxPixels;
    codec->thread_count = pixels <= fewPixels ? 1 : 0; // 0: as many as there are cores
    return avcodec_open2(codec.get(), decoder, nullptr) < 0 ? nullptr : std::move(codec);
}

// Reads one stream's packets and keeps the picture that is shown at the wanted time.
class StillSearch {
public:
    StillSearch(AVFormatContext &input, AVStream &film, CodecContextPtr codec,
                const TimeLimit &limit)
        : m_input(input)
        , m_film(film)
        , m_codec(std::move(codec))
        , m_limit(limit)
        , m_packet(av_packet_alloc())
        , m_decoded(av_frame_alloc())
        , m_best(av_frame_alloc())
    {}

    // Begins at the key frame before the wanted time. Where that lands behind it, as in containers
    // that know no key frames or whose index lies, the search begins at the first packet.
    FramePtr find(double seconds)
    {
        if (!m_packet || !m_decoded || !m_best || !readPacket()) {
            return nullptr;
        }
        m_target = targetTime(seconds);
        if (seconds > 0) {
            av_packet_unref(m_packet.get());
            if (seekBefore(m_target) && search() && m_bestTime <= m_target) {
                return std::move(m_best);
            }
            avcodec_flush_buffers(m_codec.get());
            seekToFirst(); // also after a seek that failed, which may have read to the end
        }
        return search() ? std::move(m_best) : nullptr;
    }

private:
    std::int64_t targetTime(double seconds) const
    {
        std::int64_t start = m_film.start_time;
        if (start == noTimestamp) {
            start = m_packet->pts != noTimestamp ? m_packet->pts : m_packet->dts;
        }
        const auto distance =
            static_cast<std::int64_t>(std::min(seconds, longestWay) * AV_TIME_BASE);
        return addTime(start == noTimestamp ? 0 : start,
                       av_rescale_q(distance, microseconds, m_film.time_base));
    }

    bool seekBefore(std::int64_t target)
    {
        // Where seeking goes by decoding time, a picture that is shown at the time is decoded some
        // pictures before it.
        if (!(m_input.iformat->flags & AVFMT_SEEK_TO_PTS)) {
            target = subtractTime(
                target, av_rescale_q(3 * AV_TIME_BASE / 23, microseconds, m_film.time_base));
        }
        return avformat_seek_file(&m_input, m_film.index, noTimestamp, target, target, 0) >= 0;
    }

    void seekToFirst()
    {
        constexpr std::int64_t last = std::numeric_limits<std::int64_t>::max();
        const bool knowsBytes = !(m_input.iformat->flags & AVFMT_NO_BYTE_SEEK);
        if (!knowsBytes || av_seek_frame(&m_input, m_film.index, 0, AVSEEK_FLAG_BYTE) < 0) {
            static_cast<void>(
                avformat_seek_file(&m_input, m_film.index, noTimestamp, noTimestamp + 1, last, 0));
        }
    }

    bool readPacket()
    {
        while (!m_limit.isReached() && av_read_frame(&m_input, m_packet.get()) >= 0) {
            if (m_packet->stream_index == m_film.index && m_packet->size > 0) {
                return true;
            }
            av_packet_unref(m_packet.get());
        }
        return false;
    }

    // @returns whether there is a picture.
    bool search()
    {
        m_pictures = 0;
        m_hasBest = m_isFound = false;
        m_position = noTimestamp;
        while (!m_isFound && (m_packet->size > 0 || readPacket())) {
            skipWhatNobodyNeeds();
            if (avcodec_send_packet(m_codec.get(), m_packet.get()) >= 0) {
                receive(); // a damaged packet is passed over
            }
            av_packet_unref(m_packet.get());
        }
        if (!m_isFound && avcodec_send_packet(m_codec.get(), nullptr) >= 0) {
            receive();
        }
        return m_hasBest;
    }

    // Pictures that no other one is made from need not be decoded if they end before the time.
    void skipWhatNobodyNeeds()
    {
        const bool isBefore = m_packet->pts != noTimestamp && m_packet->duration > 0 &&
                              addTime(m_packet->pts, m_packet->duration) <= m_target;
        m_codec->skip_frame = isBefore ? AVDISCARD_NONREF : AVDISCARD_DEFAULT;
    }

    void receive()
    {
        while (!m_isFound && avcodec_receive_frame(m_codec.get(), m_decoded.get()) >= 0) {
            consider();
            av_frame_unref(m_decoded.get());
        }
    }

    void consider()
    {
        const std::int64_t begin = timeOfDecoded();
        const std::int64_t length = lengthOfDecoded();
        m_position = addTime(begin, length);
        m_isFound = begin > m_target || m_position > m_target || ++m_pictures >= mostPictures ||
                    m_limit.isReached();
        // What begins later is taken only when nothing was before.
        if (begin <= m_target || !m_hasBest) {
            av_frame_unref(m_best.get());
            av_frame_move_ref(m_best.get(), m_decoded.get());
            m_bestTime = begin;
            m_hasBest = true;
        }
    }

    std::int64_t timeOfDecoded() const
    {
        const std::int64_t told = m_decoded->best_effort_timestamp;
        if (told != noTimestamp) {
            return told;
        }
        return m_position != noTimestamp ? m_position : 0;
    }

    // Without a length of its own a picture that has a time lasts until the next one.
    std::int64_t lengthOfDecoded() const
    {
        const std::int64_t told = ffmpeg::durationOf(*m_decoded);
        if (told > 0 || m_decoded->best_effort_timestamp != noTimestamp) {
            return std::max(std::int64_t{0}, told);
        }
        const AVRational rate = av_guess_frame_rate(&m_input, &m_film, nullptr);
        const AVRational length = rate.num > 0 ? av_inv_q(rate) : AVRational{1, 25};
        return std::max(std::int64_t{1}, av_rescale_q(1, length, m_film.time_base));
    }

    AVFormatContext &m_input;
    AVStream &m_film;
    const CodecContextPtr m_codec;
    const TimeLimit &m_limit;
    const PacketPtr m_packet;
    const FramePtr m_decoded;
    FramePtr m_best;
    std::int64_t m_target = 0;             // in the stream's time base
    std::int64_t m_position = noTimestamp; // where the next picture is expected
    std::int64_t m_bestTime = noTimestamp;
    int m_pictures = 0;
    bool m_hasBest = false;
    bool m_isFound = false;
};

std::optional<std::array<std::int32_t, 9>> transformOf(const AVStream &film, const AVFrame &frame)
{
    std::array<std::int32_t, 9> matrix{};
    if (const AVFrameSideData *data = av_frame_get_side_data(&frame, AV_FRAME_DATA_DISPLAYMATRIX);
        data && data->size >= sizeof(matrix)) {
        std::memcpy(matrix.data(), data->data, sizeof(matrix));
        return matrix;
    }
    if (const AVPacketSideData *data = findSideData(film, AV_PKT_DATA_DISPLAYMATRIX);
        data && data->size >= sizeof(matrix)) {
        std::memcpy(matrix.data(), data->data, sizeof(matrix));
        return matrix;
    }
    return std::nullopt;
}

}

std::optional<StillFrame> findStillFrame(AVFormatContext &input, double seconds,
                                         const TimeLimit &limit)
{
    AVStream *film = chooseFilm(input);
    if (!film || !std::isfinite(seconds) || seconds < 0) {
        return std::nullopt;
    }
    for (AVStream *stream : std::span(input.streams, input.nb_streams)) {
        stream->discard = stream == film ? AVDISCARD_DEFAULT : AVDISCARD_ALL;
    }
    CodecContextPtr codec = openFilm(*film, static_cast<SessionLog *>(input.opaque));
    if (!codec) {
        return std::nullopt;
    }
    StillFrame still;
    still.frame = StillSearch(input, *film, std::move(codec), limit).find(seconds);
    if (!still.frame) {
        return std::nullopt;
    }
    forgetUnnamedColours(*still.frame);
    still.pixelAspect = av_guess_sample_aspect_ratio(&input, film, still.frame.get());
    still.transform = transformOf(*film, *still.frame);
    return still;
}

}
