// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "engine/service/download_run.h"

#include "engine/bridge/python.h"
#include "engine/runtime/task_cancelled.h"
#include "engine/service/download_hooks.h"
#include "engine/service/download_options.h"
#include "engine/service/engine_error.h"
#include "engine/service/engine_messages.h"
#include "engine/service/engine_state.h"
#include "engine/transcode/playback_transcode.h"
#include "platform/log.h"

#include <filesystem>
#include <system_error>
#include <utility>

namespace veltro {
namespace {

namespace fs = std::filesystem;

void logRun(const std::string &text)
{
    logLine(LogTag::engine, text);
}

const char *yesOrNo(bool value)
{
    return value ? "yes" : "no";
}

bool existsQuietly(const fs::path &file)
{
    std::error_code unreadable; // what cannot be looked at is not there for us
    return fs::exists(file, unreadable);
}

/// -1 when the size cannot be read.
std::intmax_t sizeOf(const fs::path &file)
{
    std::error_code unreadable;
    const std::uintmax_t size = fs::file_size(file, unreadable);
    return unreadable ? -1 : static_cast<std::intmax_t>(size);
}

std::string address(const QUrl &url)
{
    return url.toString(QUrl::FullyEncoded).toStdString();
}

void logResult(const fs::path &file)
{
    logRun("result file path=" + file.string() + " exists=" + yesOrNo(existsQuietly(file)) +
           " bytes=" + std::to_string(sizeOf(file)));
}

}

DownloadRun::DownloadRun(std::shared_ptr<EngineState> state,
                         EventStream<DownloadEvent>::Producer events, DownloadRequest request)
    : m_state(std::move(state)), m_events(std::move(events)), m_request(std::move(request))
{}

void DownloadRun::run()
{
    const std::optional<PythonObject> ytDlp = m_state->ytDlpModule();
    if (!ytDlp) {
        m_events.fail(std::make_exception_ptr(
            EngineError::bootstrapFailed(QStringLiteral("yt_dlp not imported"))));
    } else {
        try {
            download(*ytDlp);
        } catch (const std::exception &error) {
            fail(error);
        }
    }
    m_state->endRun(m_request.id);
}

void DownloadRun::download(const PythonObject &ytDlp)
{
    const PythonObject downloader = makeDownloader(ytDlp);
    logRun("YoutubeDL constructed; extract_info…");
    const std::string page = address(m_request.url);
    const PythonObject info =
        downloader.throwing().attr("extract_info").throwing().call({page}, {{"download", false}});
    logRun(std::string("extract_info returned: ") + (info.description() == "None" ? "None" : "ok"));
    reportStarted(downloader, info);

    // Processing writes into the dictionary, and the fallback for the file's name wants it as the
    // extraction left it.
    const PythonObject asExtracted = Python().attr("dict").throwing().call({info});
    logRun("ydl.download() starting…");
    downloader.throwing().attr("download").throwing().call({std::vector<PythonObject>{page}});
    finish(finalPath(downloader, asExtracted));
}

PythonObject DownloadRun::makeDownloader(const PythonObject &ytDlp) const
{
    const HookContext context{m_request.id, m_state, m_path, m_events};
    const PythonObject options = downloadOptions(m_request, PythonObject(makeProgressHook(context)),
                                                 PythonObject(makePostprocessorHook(context)));
    logStart();
    return ytDlp.throwing().attr("YoutubeDL").throwing().call({options});
}

void DownloadRun::logStart() const
{
    const std::string folder = downloadsPath(m_request);
    logRun("download start url=" + address(m_request.url) +
           " format=" + m_request.formatID.toStdString() + " outDir=" + folder);
    logRun("outTemplate=" + templatePath(m_request));
    logRun(std::string("downloadsDir exists=") + yesOrNo(existsQuietly(folder)));
}

void DownloadRun::reportStarted(const PythonObject &downloader, const PythonObject &info) const
{
    const PythonObject sanitized =
        downloader.throwing().attr("sanitize_info").throwing().call({info});
    try {
        m_events.yield(DownloadStarted{MediaInfo::parse(sanitized)});
    } catch (const std::exception &) {
        // A page that cannot be described can still be downloaded; the run goes on without.
    }
}

std::string DownloadRun::finalPath(const PythonObject &downloader, const PythonObject &info) const
{
    const std::optional<std::string> reported = m_path->value();
    logRun("ydl.download() returned. finalPath=" + reported.value_or("<nil>"));
    if (reported) {
        return *reported;
    }
    return downloader.throwing()
        .attr("prepare_filename")
        .throwing()
        .call({info})
        .to<std::string>()
        .value_or(std::string());
}

void DownloadRun::finish(const std::string &path) const
{
    const fs::path file(path);
    logResult(file);
    if (needsPlaybackTranscode(file)) {
        logRun("post-processing: transcoding non-H.264 video to H.264…");
        m_events.yield(DownloadPostProcessing{QStringLiteral("Transcoding for playback")});
        logRun(std::string("transcode result: ") + (transcodeForPlayback(file) ? "ok" : "failed"));
    }
    m_events.yield(DownloadFinished{QUrl::fromLocalFile(QString::fromStdString(path))});
    m_events.finish();
}

void DownloadRun::fail(const std::exception &error) const
{
    logRun(std::string("download FAILED: ") + error.what());
    if (m_state->isCancelled(m_request.id)) {
        m_events.fail(std::make_exception_ptr(TaskCancelled()));
    } else if (isDRMFailure(error)) {
        m_events.fail(std::make_exception_ptr(EngineError::drmProtected()));
    } else {
        m_events.fail(
            std::make_exception_ptr(EngineError::downloadFailed(cleanEngineMessage(error))));
    }
}

}
