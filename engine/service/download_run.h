// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once
#include "engine/bridge/python_object.h"
#include "engine/media/download_event.h"
#include "engine/media/download_request.h"
#include "engine/service/event_stream.h"
#include "engine/service/path_box.h"

#include <memory>

namespace veltro {

class EngineState;

/// One download, from extraction to the finished file. Lives on the primary interpreter queue,
/// inside one job; events leave through the stream.
class DownloadRun {
public:
    DownloadRun(std::shared_ptr<EngineState> state, EventStream<DownloadEvent>::Producer events,
                DownloadRequest request);

    /// Does it all and ends the stream on every path; does not throw. Blocks for the whole run.
    /// REQUIRES: inside an interpreter job.
    void run();

private:
    void download(const PythonObject &ytDlp);
    void logStart() const;
    [[nodiscard]] PythonObject makeDownloader(const PythonObject &ytDlp) const;
    void reportStarted(const PythonObject &downloader, const PythonObject &info) const;
    [[nodiscard]] std::string finalPath(const PythonObject &downloader,
                                        const PythonObject &info) const;
    void finish(const std::string &path) const;
    void fail(const std::exception &error) const;

    // Constant after construction.
    const std::shared_ptr<EngineState> m_state;
    const EventStream<DownloadEvent>::Producer m_events;
    const DownloadRequest m_request;
    const std::shared_ptr<PathBox> m_path = std::make_shared<PathBox>();
};

}
