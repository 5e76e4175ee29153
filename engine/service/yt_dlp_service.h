// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once
#include "engine/media/download_event.h"
#include "engine/media/download_request.h"
#include "engine/media/media_info.h"
#include "engine/service/event_stream.h"

#include <QCoro/QCoroTask>
#include <QUrl>
#include <QUuid>

#include <memory>
#include <optional>

namespace veltro {

class EngineState;

/// The engine: everything that the program asks of yt-dlp goes through here.
/// Main thread only, except where an operation says otherwise; the work itself runs on the two
/// interpreter queues, and the waiting coroutine holds no thread.
class YtDlpService {
public:
    YtDlpService();
    ~YtDlpService();
    YtDlpService(const YtDlpService &) = delete;
    YtDlpService &operator=(const YtDlpService &) = delete;

    /// Any thread.
    [[nodiscard]] bool isBootstrapped() const;

    /// Starts the interpreter and imports what the engine needs; does it again when it was done
    /// before. Blocks. REQUIRES: on the primary interpreter queue, inside runThrowing().
    /// @throws EngineError bootstrapFailed, or the error of the interpreter's own start.
    void bootstrap();

    /// Bootstraps on the primary queue unless that was done. Probes and downloads do it by
    /// themselves when they must. @throws as bootstrap() does.
    [[nodiscard]] QCoro::Task<void> ensureBootstrapped();

    /// Reads what a page offers, downloading nothing. The cookie file is only read.
    /// @throws EngineError probeFailed, or what a needed bootstrap throws.
    [[nodiscard]] QCoro::Task<MediaInfo> probe(QUrl url, std::optional<QUrl> cookies);

    /// Downloads, as a stream of events. Runs go one at a time, in the order of these calls. The
    /// stream ends after "finished", or throws EngineError, TaskCancelled, or what a needed
    /// bootstrap throws. Dropping the stream cancels the run.
    [[nodiscard]] EventStream<DownloadEvent> downloadEvents(DownloadRequest request);

    /// Asks a run to stop; it does at its next report of progress. Nothing happens when no such
    /// run is under way. Any thread.
    void cancelDownload(const QUuid &id);

    /// Whether any run is queued or under way. Any thread.
    [[nodiscard]] bool hasRuns() const;

private:
    // Constant after construction; the jobs share it, and may outlive this object.
    const std::shared_ptr<EngineState> m_state;
};

}
