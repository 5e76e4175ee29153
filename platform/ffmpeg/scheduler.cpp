// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/ffmpeg/scheduler.h"

#include <algorithm>
#include <limits>

namespace veltro::ffmpeg {
namespace {

std::int64_t positionOf(const OutputStream &stream)
{
    return stream.lastDts == noTimestamp
               ? noTimestamp
               : av_rescale_q(stream.lastDts, stream.stream->time_base, microseconds);
}

}

Scheduler::Scheduler(const InputFiles &inputs, const OutputFiles &outputs, const RunContext &run)
    : m_inputs(inputs), m_run(run), m_packet(av_packet_alloc())
{
    if (!m_packet) {
        throw CommandFailed("Cannot allocate memory");
    }
    for (const auto &output : outputs) {
        for (const auto &stream : output->streams()) {
            addRoute(*output, *stream);
        }
    }
    for (const auto &input : inputs) {
        input->skipUnusedPrograms();
    }
}

void Scheduler::addRoute(OutputFile &output, OutputStream &stream)
{
    if (!stream.source) { // an attached file is complete as it is
        stream.isFinished = true;
        output.streamReady(stream);
        return;
    }
    Route route{&output, &stream, nullptr, nullptr, false};
    route.input = m_inputs[static_cast<std::size_t>(stream.source->fileIndex)].get();
    route.path = makeStreamPath(*route.input, output, stream, m_run);
    m_routes.push_back(std::move(route));
}

void Scheduler::run()
{
    for (;;) {
        m_run.control.check();
        Route *next = furthestBehind();
        if (!next) {
            break;
        }
        step(*next);
    }
    for (Route &route : m_routes) {
        if (!route.isEnded) {
            endRoute(route);
        }
    }
}

bool Scheduler::wantsMore(const Route &route) const
{
    const OutputStream &stream = *route.stream;
    // Encoders of pictures hold frames back: those are counted on their way in.
    const bool isCounted = stream.isCopied || stream.type() != AVMEDIA_TYPE_VIDEO;
    return !route.isEnded && !stream.isFinished && !stream.hasEnough && !route.output->isFull() &&
           (!isCounted || stream.packets < stream.packetLimit);
}

// A stream that is not ready holds its whole file back, so it comes before all others.
Scheduler::Route *Scheduler::furthestBehind()
{
    Route *chosen = nullptr;
    std::int64_t lowest = std::numeric_limits<std::int64_t>::max();
    for (Route &route : m_routes) {
        if (!wantsMore(route)) {
            continue;
        }
        if (!route.stream->isReady) {
            return &route;
        }
        if (const std::int64_t position = positionOf(*route.stream); position < lowest) {
            lowest = position;
            chosen = &route;
        }
    }
    return chosen;
}

void Scheduler::step(Route &route)
{
    InputFile *input = route.input;
    if (!input->read(*m_packet)) {
        for (Route &other : m_routes) {
            if (other.input == input && !other.isEnded) {
                endRoute(other);
            }
        }
        return;
    }
    for (Route &other : m_routes) {
        if (other.input == input && !other.isEnded && !other.stream->isFinished &&
            other.stream->source->stream->index == m_packet->stream_index) {
            other.path->accept(*m_packet);
        }
    }
    av_packet_unref(m_packet.get());
}

void Scheduler::endRoute(Route &route)
{
    route.isEnded = true;
    if (!route.stream->isFinished) {
        route.path->finish();
    }
}

}
