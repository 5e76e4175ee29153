// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
// From a link to the queue: what probes first, what asks, and what queues at once.
#include "coordination/coordinator.h"
#include "coordination/detach.h"
#include "coordination/page_links.h"
#include "engine/selectors/format_selector.h"
#include "engine/service/yt_dlp_service.h"
#include "library/download_storage.h"
#include "platform/pasteboard.h"

#include <QCoro/QCoroFuture>
#include <QCoro/QCoroTimer>
#include <QPromise>
#include <QTimer>

#include <algorithm>
#include <chrono>
#include <memory>
#include <utility>

namespace veltro {
namespace {

// Between two links of a batch, so that the list is seen to fill.
constexpr std::chrono::milliseconds batchPause{80};

/// Stands for a selector where a format is wanted.
Format formatForSelector(const QString &selector)
{
    Format format;
    format.id = selector;
    format.ext = QStringLiteral("mp4");
    return format;
}

/// The format of this id, else the first; nothing when there is none at all.
std::optional<Format> formatForRetry(const std::vector<Format> &formats, const QString &id)
{
    if (formats.empty()) {
        return std::nullopt;
    }
    const auto same = std::find_if(formats.begin(), formats.end(),
                                   [&id](const Format &format) { return format.id == id; });
    return same == formats.end() ? formats.front() : *same;
}

}

QCoro::Task<void> MacAppStore::startEngine()
{
    const Self self(this);
    std::optional<QString> failure;
    try {
        co_await m_services.engine.ensureBootstrapped();
    } catch (...) {
        failure = errorText(std::current_exception());
    }
    if (!self) {
        co_return;
    }
    if (failure) {
        self->alert(QStringLiteral("Could not start the engine: ") + *failure);
    } else {
        self->setEngineReady();
    }
}

std::optional<QUrl> MacAppStore::cookieFile(const QUrl &page)
{
    const QString host = page.host();
    return m_services.storage.cookieFile(host.isEmpty() ? std::nullopt : std::optional(host));
}

std::optional<QUrl> MacAppStore::cookieFileIfReadable(const QUrl &page)
{
    try {
        return cookieFile(page);
    } catch (const std::exception &) {
        return std::nullopt; // the page may well do without; where not, the site says so
    }
}

QCoro::Task<MediaInfo> MacAppStore::probeWithCookies(QUrl url)
{
    const std::optional<QUrl> cookies = cookieFile(url);
    co_return co_await m_services.engine.probe(url, cookies);
}

QCoro::Task<std::optional<MediaInfo>> MacAppStore::orAlert(Self self, QCoro::Task<MediaInfo> probe)
{
    std::optional<MediaInfo> info;
    QString failure;
    try {
        info = co_await std::move(probe);
    } catch (...) {
        failure = errorText(std::current_exception());
    }
    if (self && !info) {
        self->alert(failure);
    }
    co_return self ? std::move(info) : std::nullopt;
}

QCoro::Task<void> MacAppStore::submitLink(QUrl url)
{
    const Self self(this);
    const std::optional<MediaInfo> info = co_await orAlert(self, probeWithCookies(url));
    if (self && info) {
        self->setPendingFormatPick(FormatPickRequest{QUuid::createUuid(), url, *info});
    }
}

QCoro::Task<void> MacAppStore::pasteAndSave()
{
    const Self self(this);
    const auto link = std::make_shared<std::optional<QUrl>>();
    auto answered = std::make_shared<QPromise<void>>();
    answered->start();
    const QFuture<void> answer = answered->future();
    // The promise goes with the function that it is given to, answered or not.
    m_services.pasteboard.read(
        Pasteboard::Use::link, this,
        [link, answered = std::move(answered)](const std::optional<QString> &text) {
            *link = pageLink(text.value_or(QString()));
            answered->finish();
        });
    co_await answer;
    if (self && *link) {
        co_await self->submitLink(**link);
    }
}

QCoro::Task<void> MacAppStore::startDownload(QUrl url, QString formatID)
{
    const Self self(this);
    const std::optional<MediaInfo> info = co_await orAlert(self, probeWithCookies(url));
    if (self && info) {
        Format format = formatForSelector(formatID);
        format.isAudioOnly = isAudioOnlySelector(formatID);
        co_await self->completeFormatPick(url, format);
    }
}

QCoro::Task<void> MacAppStore::retry(Record record)
{
    const Self self(this);
    const Record failed = std::move(record);
    const std::optional<QUrl> cookies = cookieFileIfReadable(failed->url());
    const std::optional<MediaInfo> info =
        co_await orAlert(self, m_services.engine.probe(failed->url(), cookies));
    if (!self || !info) {
        co_return;
    }
    if (const std::optional<Format> format = formatForRetry(info->formats, failed->formatID())) {
        self->m_activeDownloads.remove(failed->id());
        co_await self->completeFormatPick(failed->url(), *format);
    }
}

void MacAppStore::handleOpenURL(const QUrl &request)
{
    if (const std::optional<QUrl> link = linkInRequest(request)) {
        beginLink(*link);
    }
}

void MacAppStore::submitBatch(const QString &text)
{
    QList<QUrl> links = pageLinks(text);
    if (!links.isEmpty()) {
        detach(queueBatch(this, std::move(links), formatForSelector(m_preferences.defaultFormatID)),
               QStringLiteral("the batch"));
    }
}

QCoro::Task<void> MacAppStore::queueBatch(Self self, QList<QUrl> links, Format format)
{
    QTimer pause;
    pause.setSingleShot(true);
    pause.setTimerType(Qt::PreciseTimer);
    for (qsizetype index = 0; self && index < links.size(); ++index) {
        co_await self->completeFormatPick(links.at(index), format);
        if (index + 1 < links.size()) {
            pause.start(batchPause);
            co_await pause;
        }
    }
}

void MacAppStore::beginEngine()
{
    detach(startEngine(), QStringLiteral("starting the engine"));
}

void MacAppStore::beginLink(const QUrl &url)
{
    detach(submitLink(url), QStringLiteral("a link"));
}

void MacAppStore::beginPaste()
{
    detach(pasteAndSave(), QStringLiteral("the pasted link"));
}

void MacAppStore::beginDownload(const QUrl &url, const QString &formatID)
{
    detach(startDownload(url, formatID), QStringLiteral("a download"));
}

void MacAppStore::beginFormatPick(const QUrl &url, const Format &format)
{
    detach(completeFormatPick(url, format), QStringLiteral("a picked format"));
}

void MacAppStore::beginRetry(const QUuid &id)
{
    if (const Record record = m_activeDownloads.find(id)) {
        detach(retry(record), QStringLiteral("another try"));
    }
}

}
