// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "engine/service/yt_dlp_service.h"

#include "engine/runtime/python_executor.h"
#include "engine/service/bootstrap.h"
#include "engine/service/download_run.h"
#include "engine/service/engine_state.h"
#include "engine/service/probe.h"

#include <QCoro/QCoroFuture>
#include <QFuture>
#include <QPromise>

#include <exception>
#include <functional>
#include <utility>

namespace veltro {
namespace {

using Events = EventStream<DownloadEvent>;

/// Hands a piece of work's outcome to whoever waits on the main thread. The work must not let an
/// interpreter object escape, not even inside an error.
template <typename Value>
void settle(QPromise<Value> &promise, const std::function<Value()> &work)
{
    promise.start();
    try {
        if constexpr (std::is_void_v<Value>) {
            work();
        } else {
            promise.addResult(work());
        }
    } catch (...) {
        promise.setException(std::current_exception());
    }
    promise.finish();
}

void bootstrapOnPrimary(EngineState &state)
{
    PythonExecutor::runThrowing([&state] { bootstrapEngine(state); });
}

/// REQUIRES: the engine is bootstrapped.
void submitRun(const std::shared_ptr<EngineState> &state, const Events::Producer &events,
               const DownloadRequest &request)
{
    events.onTermination([state, id = request.id] { state->requestCancellation(id); });
    PythonExecutor::primary().submit(
        [state, events, request] { DownloadRun(state, events, request).run(); });
}

}

YtDlpService::YtDlpService() : m_state(std::make_shared<EngineState>()) {}

YtDlpService::~YtDlpService() = default;

bool YtDlpService::isBootstrapped() const
{
    return m_state->isBootstrapped();
}

void YtDlpService::bootstrap()
{
    bootstrapEngine(*m_state);
}

QCoro::Task<void> YtDlpService::ensureBootstrapped()
{
    if (m_state->isBootstrapped()) {
        co_return;
    }
    auto promise = std::make_shared<QPromise<void>>();
    QFuture<void> done = promise->future();
    PythonExecutor::primary().queue().async([promise, state = m_state] {
        settle<void>(*promise, [&state] { bootstrapOnPrimary(*state); });
    });
    co_await done;
}

QCoro::Task<MediaInfo> YtDlpService::probe(QUrl url, std::optional<QUrl> cookies)
{
    const std::shared_ptr<EngineState> state = m_state;
    co_await ensureBootstrapped();
    auto promise = std::make_shared<QPromise<MediaInfo>>();
    QFuture<MediaInfo> info = promise->future();
    PythonExecutor::probe().submit([promise, state, url, cookies] {
        settle<MediaInfo>(*promise, [&] { return probePage(*state, url, cookies); });
    });
    co_return co_await info;
}

EventStream<DownloadEvent> YtDlpService::downloadEvents(DownloadRequest request)
{
    Events stream;
    const Events::Producer events = stream.producer();
    m_state->beginRun(request.id);
    if (m_state->isBootstrapped()) {
        submitRun(m_state, events, request);
        return stream;
    }
    PythonExecutor::primary().queue().async(
        [state = m_state, events, request = std::move(request)] {
            try {
                bootstrapOnPrimary(*state);
            } catch (...) {
                events.fail(std::current_exception());
                state->endRun(request.id);
                return;
            }
            submitRun(state, events, request);
        });
    return stream;
}

void YtDlpService::cancelDownload(const QUuid &id)
{
    m_state->requestCancellation(id);
}

bool YtDlpService::hasRuns() const
{
    return m_state->hasRuns();
}

}
