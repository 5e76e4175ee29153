// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/ffmpeg/vaapi_device.h"

#include "platform/ffmpeg/av_ptr.h"

extern "C" {
#include <libavutil/hwcontext.h>
}

namespace veltro::ffmpeg {
namespace {

struct BufferDeleter {
    void operator()(AVBufferRef *reference) const { av_buffer_unref(&reference); }
};
using BufferPtr = std::unique_ptr<AVBufferRef, BufferDeleter>;

class VaapiDevice : public EncoderDevice {
public:
    int attach(AVCodecContext &codec) override
    {
        DictionaryPtr options;
        av_dict_set(DictionaryLoan(options), "connection_type", "drm", 0);
        AVBufferRef *device = nullptr;
        if (const int error =
                av_hwdevice_ctx_create(&device, AV_HWDEVICE_TYPE_VAAPI, nullptr, options.get(), 0);
            error < 0) {
            return error;
        }
        m_device.reset(device);
        m_frames.reset(av_hwframe_ctx_alloc(device));
        if (!m_frames) {
            return AVERROR(ENOMEM);
        }
        auto &frames = *reinterpret_cast<AVHWFramesContext *>(m_frames->data);
        frames.format = AV_PIX_FMT_VAAPI;
        frames.sw_format = AV_PIX_FMT_NV12;
        frames.width = codec.width;
        frames.height = codec.height;
        frames.initial_pool_size = 24; // more than the encoder holds back
        if (const int error = av_hwframe_ctx_init(m_frames.get()); error < 0) {
            return error;
        }
        codec.pix_fmt = AV_PIX_FMT_VAAPI;
        codec.hw_frames_ctx = av_buffer_ref(m_frames.get());
        return codec.hw_frames_ctx ? 0 : AVERROR(ENOMEM);
    }

    int upload(AVFrame &frame) override
    {
        const FramePtr uploaded(av_frame_alloc());
        int error =
            uploaded ? av_hwframe_get_buffer(m_frames.get(), uploaded.get(), 0) : AVERROR(ENOMEM);
        if (error >= 0) {
            error = av_hwframe_transfer_data(uploaded.get(), &frame, 0);
        }
        if (error >= 0) {
            error = av_frame_copy_props(uploaded.get(), &frame);
        }
        if (error < 0) {
            return error;
        }
        av_frame_unref(&frame);
        av_frame_move_ref(&frame, uploaded.get());
        return 0;
    }

private:
    BufferPtr m_device;
    BufferPtr m_frames;
};

}

std::unique_ptr<EncoderDevice> makeVaapiDevice()
{
    return std::make_unique<VaapiDevice>();
}

}
