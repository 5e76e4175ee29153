// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once
#include "platform/ffmpeg/libav.h"

#include <memory>

namespace veltro::ffmpeg {

/// Gives an object back to the FFmpeg libraries by the function that belongs to its type.
struct AvDeleter {
    void operator()(AVCodecContext *context) const { avcodec_free_context(&context); }
    void operator()(AVCodecParameters *parameters) const { avcodec_parameters_free(&parameters); }
    void operator()(AVPacket *packet) const { av_packet_free(&packet); }
    void operator()(AVFrame *frame) const { av_frame_free(&frame); }
    void operator()(AVFilterGraph *graph) const { avfilter_graph_free(&graph); }
    void operator()(AVFilterInOut *ends) const { avfilter_inout_free(&ends); }
    void operator()(AVDictionary *dictionary) const { av_dict_free(&dictionary); }
    void operator()(AVBSFContext *context) const { av_bsf_free(&context); }
    void operator()(SwsContext *context) const { sws_freeContext(context); }
};

/// Closes a demuxer and its byte stream, the libraries' own or that of openLocalInput().
struct InputContextDeleter {
    void operator()(AVFormatContext *context) const;
};

/// Frees a muxer. Its byte stream is left alone: closing can fail, so whoever writes closes it and
/// looks at the answer.
struct OutputContextDeleter {
    void operator()(AVFormatContext *context) const { avformat_free_context(context); }
};

/// Memory that av_malloc() and its kin handed out, texts from the option calls among it.
struct AvMemoryDeleter {
    void operator()(void *memory) const { av_free(memory); }
};

using InputContextPtr = std::unique_ptr<AVFormatContext, InputContextDeleter>;
using OutputContextPtr = std::unique_ptr<AVFormatContext, OutputContextDeleter>;
using CodecContextPtr = std::unique_ptr<AVCodecContext, AvDeleter>;
using CodecParametersPtr = std::unique_ptr<AVCodecParameters, AvDeleter>;
using PacketPtr = std::unique_ptr<AVPacket, AvDeleter>;
using FramePtr = std::unique_ptr<AVFrame, AvDeleter>;
using FilterGraphPtr = std::unique_ptr<AVFilterGraph, AvDeleter>;
using FilterEndsPtr = std::unique_ptr<AVFilterInOut, AvDeleter>;
using DictionaryPtr = std::unique_ptr<AVDictionary, AvDeleter>;
using BitstreamFilterPtr = std::unique_ptr<AVBSFContext, AvDeleter>;
using ScalerPtr = std::unique_ptr<SwsContext, AvDeleter>;
using AvTextPtr = std::unique_ptr<char, AvMemoryDeleter>;

/// Lends a dictionary to a call that takes AVDictionary ** and may replace or empty it. What the
/// call leaves is owned by the pointer again when the loan ends.
class DictionaryLoan {
public:
    explicit DictionaryLoan(DictionaryPtr &owner) : m_owner(owner), m_lent(owner.release()) {}
    ~DictionaryLoan() { m_owner.reset(m_lent); }
    DictionaryLoan(const DictionaryLoan &) = delete;
    DictionaryLoan &operator=(const DictionaryLoan &) = delete;
    operator AVDictionary **() { return &m_lent; }

private:
    DictionaryPtr &m_owner;
    AVDictionary *m_lent;
};

}
