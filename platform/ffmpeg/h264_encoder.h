// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once
#include "platform/ffmpeg/command_failed.h"
#include "platform/ffmpeg/libav.h"

#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace veltro::ffmpeg {

/// A device with memory of its own, into which frames go before they are encoded there. One thread
/// at a time.
class EncoderDevice {
public:
    virtual ~EncoderDevice() = default;
    /// Fits a codec context, whose size is set, to the device, before it is opened.
    /// @returns an AVERROR code or 0.
    [[nodiscard]] virtual int attach(AVCodecContext &codec) = 0;
    /// Replaces a frame in ordinary memory by one on the device.
    /// @returns an AVERROR code or 0.
    [[nodiscard]] virtual int upload(AVFrame &frame) = 0;
};
using EncoderDeviceMaker = std::function<std::unique_ptr<EncoderDevice>()>;

/// An H.264 encoder that this machine may have, and what it is told besides the command line's own
/// words.
struct H264Encoder {
    const AVCodec *encoder = nullptr;
    std::vector<std::pair<std::string, std::string>> options;
    bool isHardware = false;
    EncoderDeviceMaker makeDevice;               ///< empty when it takes ordinary frames
    AVPixelFormat frameFormat = AV_PIX_FMT_NONE; ///< of the frames that a device takes up
};
/// Lists the encoders for pictures of a size, the best first.
using H264EncoderList = std::function<std::vector<H264Encoder>(int width, int height)>;

/// What the libraries know: VAAPI, NVENC, QSV and V4L2, whether or not the machine has such
/// hardware, then software.
[[nodiscard]] std::vector<H264Encoder> knownH264Encoders(int width, int height);

/// The first encoder of the list that opens. Hardware that is missing is given up within
/// milliseconds; software is taken as it is.
/// @throws CommandFailed when none is left.
[[nodiscard]] H264Encoder chooseH264Encoder(std::vector<H264Encoder> list, int width, int height);

/// An encoder in hardware has failed after it was chosen: the same can be tried in software.
class HardwareFailed : public CommandFailed {
public:
    using CommandFailed::CommandFailed;
};

}
