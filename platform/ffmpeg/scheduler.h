// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once
#include "platform/ffmpeg/output_file.h"
#include "platform/ffmpeg/stream_map.h"
#include "platform/ffmpeg/stream_path.h"

#include <memory>
#include <vector>

namespace veltro::ffmpeg {

using OutputFiles = std::vector<std::unique_ptr<OutputFile>>;

/// Moves everything from the inputs to the outputs: reads from where the output that is furthest
/// behind gets its packets, and hands each packet to the paths that begin at its stream. It alone
/// knows the whole; the paths never know each other. The run's thread.
class Scheduler {
public:
    /// Makes a path for each output stream. Outputs whose streams are all copied are opened by it.
    /// @throws CommandFailed
    Scheduler(const InputFiles &inputs, const OutputFiles &outputs, const RunContext &run);

    /// Runs until every output has what it wants, or the inputs end.
    /// @throws CommandFailed, CommandCancelled
    void run();

private:
    struct Route {
        OutputFile *output = nullptr;
        OutputStream *stream = nullptr;
        InputFile *input = nullptr;
        std::unique_ptr<StreamPath> path;
        bool isEnded = false; // its input has nothing more for it
    };

    void addRoute(OutputFile &output, OutputStream &stream);
    [[nodiscard]] bool wantsMore(const Route &route) const;
    [[nodiscard]] Route *furthestBehind();
    void step(Route &route);
    static void endRoute(Route &route);

    const InputFiles &m_inputs;
    const RunContext &m_run;
    const PacketPtr m_packet;
    std::vector<Route> m_routes;
};

}
