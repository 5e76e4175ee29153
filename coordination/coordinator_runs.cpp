// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
// From the queue to the library: the runs, strictly one after another.
#include "coordination/coordinator.h"
#include "coordination/detach.h"
#include "engine/media/download_request.h"
#include "engine/runtime/task_cancelled.h"
#include "engine/selectors/format_selector.h"
#include "engine/service/yt_dlp_service.h"
#include "library/completion_notifier.h"
#include "library/download_storage.h"
#include "platform/workspace.h"

#include <utility>

namespace veltro {
namespace {

/// How a run ended that threw.
ItemState stateAfter(const std::exception_ptr &error)
{
    try {
        std::rethrow_exception(error);
    } catch (const TaskCancelled &) {
        return {ItemState::Kind::cancelled, {}};
    } catch (...) {
        return ItemState::failed(errorText(error));
    }
}

}

QCoro::Task<void> MacAppStore::completeFormatPick(QUrl url, Format format)
{
    DownloadOrder order{QUuid::createUuid(), std::move(url), selectorForPickedFormat(format),
                        format.label()};
    const auto record = std::make_shared<DownloadProgressState>(std::move(order));
    m_activeDownloads.append(record);
    auto own = std::make_shared<Completion>();
    const auto previous = std::exchange(m_inFlightTask, own);
    detach(runInTurn(this, previous, own, record), QStringLiteral("a run"));
    co_return;
}

QCoro::Task<void> MacAppStore::runInTurn(Self self, std::shared_ptr<Completion> previous,
                                         std::shared_ptr<Completion> own, Record record)
{
    const FinishAtEnd turn(own);
    co_await previous->wait();
    const bool isWanted = self && self->m_activeDownloads.contains(record->id()) &&
                          record->state().kind != ItemState::Kind::cancelled;
    if (isWanted) {
        co_await run(self, record);
    }
}

QCoro::Task<void> MacAppStore::run(Self self, Record record)
{
    self->m_run = RunInProgress{record};
    self->setStartedToast(record->title());
    ItemState ending = co_await follow(self, record);
    if (!self) {
        co_return;
    }
    if (std::exchange(self->m_run, std::nullopt)->isCancelled) {
        ending = {ItemState::Kind::cancelled, {}};
    }
    if (ending.kind == ItemState::Kind::done) {
        co_await self->m_services.storage.record(record);
        if (self) {
            self->m_services.workspace.haptic();
        }
        co_return;
    }
    record->setState(ending);
    if (ending.kind == ItemState::Kind::failed) {
        self->m_services.workspace.beep();
    }
}

QCoro::Task<ItemState> MacAppStore::follow(Self self, Record record)
{
    try {
        EventStream<DownloadEvent> events =
            self->m_services.engine.downloadEvents(self->requestFor(*record));
        while (const std::optional<DownloadEvent> event = co_await events.next()) {
            if (!self) {
                break; // dropping the stream ends the run
            }
            self->takeEvent(*event);
        }
    } catch (...) {
        co_return stateAfter(std::current_exception());
    }
    co_return ItemState{ItemState::Kind::done, {}};
}

DownloadRequest MacAppStore::requestFor(const DownloadProgressState &record)
{
    DownloadRequest request;
    request.id = record.id();
    request.url = record.url();
    request.formatID = record.formatID();
    request.cookiesFile = cookieFileIfReadable(record.url());
    request.outputTemplate = m_preferences.outputTemplate;
    request.downloadsDirectory = downloadsDirectory();
    // What the user wishes of subtitles and sound is kept, and does not change a run.
    request.writeSubtitles = true;
    request.subtitleLanguages = QStringList{QStringLiteral("en")};
    request.extractAudio = false;
    request.audioFormat = QStringLiteral("m4a");
    return request;
}

void MacAppStore::takeEvent(const DownloadEvent &event)
{
    if (m_run->isCancelled) {
        return; // the engine comes to its end in its own time; nothing is told of it any more
    }
    const Record record = m_run->record;
    record->apply(event);
    if (const auto *const finished = std::get_if<DownloadFinished>(&event)) {
        announceFinished(*record, finished->fileURL);
    }
}

void MacAppStore::announceFinished(const DownloadProgressState &record, const QUrl &file)
{
    setCompletedToast(CompletedToast{record.id(), record.title(), file});
    if (!m_services.isApplicationActive()) {
        detach(m_services.notifier.notify(record.title()), QStringLiteral("a notice"));
    }
}

}
