// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once
#include "platform/ffmpeg/av_ptr.h"
#include "platform/ffmpeg/h264_encoder.h"
#include "platform/ffmpeg/timestamp.h"

#include <cstddef>
#include <cstdint>
#include <deque>
#include <limits>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace veltro::ffmpeg {

struct InputStream;

/// How an encoded stream is made. What the command line leaves open is empty or zero.
struct EncodeSettings {
    const AVCodec *encoder = nullptr;
    DictionaryPtr options;                                       ///< for the encoder
    std::vector<std::pair<std::string, std::string>> ownOptions; ///< where it says nothing else
    DictionaryPtr scaler;                                        ///< for conversions of pictures
    DictionaryPtr resampler;                                     ///< for conversions of sound
    std::string filters;                                         ///< -filter
    std::uint32_t tag = 0;
    std::optional<double> quality; ///< -q
    bool isBitexact = false;

    // pictures
    int width = 0;
    int height = 0;
    AVPixelFormat pixelFormat = AV_PIX_FMT_NONE;
    AVRational frameRate{0, 1};
    AVRational timeBase{0, 1};     ///< -enc_time_base; -1/1 for the input's
    bool keepsEveryFrame = false;  ///< timestamps go through as they are, none is dropped
    std::string keyFrames;         ///< -force_key_frames
    bool cropsToEven = false;      ///< an odd width or height loses one line
    bool isHardware = false;       ///< its failure is no reason to give up: HardwareFailed
    EncoderDeviceMaker makeDevice; ///< where frames go before they are encoded
    AVPixelFormat deviceFormat = AV_PIX_FMT_NONE; ///< of frames for that device

    // sound
    AVSampleFormat sampleFormat = AV_SAMPLE_FMT_NONE;
    int sampleRate = 0;
    int channels = 0;
    std::string channelLayout;
};

/// One stream of an output, from where its packets come to how far it is.
struct OutputStream {
    AVStream *stream = nullptr;    ///< owned by the muxer
    InputStream *source = nullptr; ///< null for an attached file
    bool isCopied = false;
    EncodeSettings encode; ///< when it is not copied
    AVRational aspect{0, 1};
    std::optional<std::string> disposition;
    bool copiesLeadingFrames = false; ///< -copyinkf: also what comes before the first key frame
    bool copiesBeforeStart = true;    ///< -copypriorss
    DictionaryPtr codecOptions;       ///< of a copied stream
    std::optional<double> rotation;   ///< -metadata rotate=
    BitstreamFilterPtr bitstreamFilter;

    AVRational packetBase{0, 1}; ///< the time base of packets that come in
    bool isReady = false;        ///< its parameters are final
    bool isFinished = false;
    bool hasEnough = false;             ///< nothing more needs to be read for it
    std::int64_t lastDts = noTimestamp; ///< as written, in the muxer's time base
    std::int64_t duration = 0;          ///< of all packets so far, in packetBase
    std::int64_t packetLimit = std::numeric_limits<std::int64_t>::max(); ///< -frames
    std::int64_t packets = 0;
    std::int64_t bytes = 0;

    // What came before every stream was ready.
    std::deque<PacketPtr> waiting;
    std::size_t waitingBytes = 0;
    std::size_t waitingCountLimit = 128; ///< holds once the bytes are over their limit
    std::size_t waitingBytesLimit = std::size_t{50} << 20;

    [[nodiscard]] AVMediaType type() const { return stream->codecpar->codec_type; }
};

}
