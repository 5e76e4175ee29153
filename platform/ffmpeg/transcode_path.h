// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once
#include "platform/ffmpeg/decoder.h"
#include "platform/ffmpeg/encode_stage.h"
#include "platform/ffmpeg/hand_over.h"
#include "platform/ffmpeg/stream_path.h"
#include "platform/ffmpeg/worker_thread.h"

#include <atomic>
#include <cstdint>
#include <exception>
#include <memory>
#include <vector>

namespace veltro::ffmpeg {

/// Decodes, filters and encodes pictures or sound on two threads of its own: one decodes, one
/// filters and encodes. A packet goes through both, and what came of it is written by the run's
/// thread when a fixed number of later packets is on the way. So the file depends on the input
/// alone, never on which thread was faster; a failure too is met in its place.
class TranscodePath : public StreamPath {
public:
    /// @throws CommandFailed when the stream cannot be decoded at all.
    TranscodePath(InputFile &input, OutputFile &output, OutputStream &stream,
                  const RunContext &run);

    void accept(const AVPacket &packet) override;
    void finish() override;

private:
    /// A packet on its way. Each thread has it to itself while it holds it.
    struct Job {
        PacketPtr packet; // null when it is the last one
        bool isLast = false;
        bool isWanted = true;                // what the decoder still holds at the end
        std::int64_t position = noTimestamp; // of the input, in microseconds
        std::vector<FramePtr> frames;
        AVRational base{0, 1}; // of the frames
        Encoded result;
        std::exception_ptr failure;
    };
    using JobPtr = std::unique_ptr<Job>;

    void begin(JobPtr job);
    void completeUntil(std::size_t left);
    void complete(Job &job);
    [[nodiscard]] std::size_t depth() const;

    [[nodiscard]] bool attempt(Job &job, void (TranscodePath::*work)(Job &job)) noexcept;
    void decodeJobs() noexcept;
    void decode(Job &job);
    void encodeJobs() noexcept;
    void encode(Job &job);

    OutputFile &m_output;
    OutputStream &m_stream;
    const InputStream &m_source;
    const RunContext &m_run;
    const std::size_t m_fullDepth;
    std::size_t m_underWay = 0;
    std::atomic<bool> m_isAbandoned = false; // nobody wants what is under way

    Decoder m_decoder;    // the decoding thread
    EncodeStage m_encode; // the encoding thread
    HandOver<JobPtr> m_toDecode;
    HandOver<JobPtr> m_toEncode;
    HandOver<JobPtr> m_done;
    // Last, so that they have ended before what they use is gone; the encoding thread ends first.
    WorkerThread m_decodeThread;
    WorkerThread m_encodeThread;
};

}
