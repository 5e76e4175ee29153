// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "library/download_storage.h"

#include "coordination/download_progress_state.h"
#include "library/media_facts.h"
#include "library/model_container.h"
#include "library/model_context.h"
#include "library/search_indexer.h"
#include "platform/serial_queue.h"

#include <QCoro/QCoroFuture>
#include <QFile>
#include <QPromise>

#include <functional>
#include <utility>

namespace veltro {
namespace {

/// Does the work on the queue for finished files, which may take long over one.
template <typename Value>
QFuture<Value> onRecordingQueue(std::function<Value()> work)
{
    static SerialQueue queue("com.veltro.recording");
    auto promise = std::make_shared<QPromise<Value>>();
    QFuture<Value> value = promise->future();
    queue.async([promise, work = std::move(work)] {
        promise->start();
        promise->addResult(work());
        promise->finish();
    });
    return value;
}

/// Recording queue only.
const std::shared_ptr<ModelContainer> &sharedContainer()
{
    static const std::shared_ptr<ModelContainer> container = DownloadStorage::makeContainer();
    return container;
}

/// The item as it was written; nothing when there is no store.
std::optional<DownloadItem> writeItem(DownloadItem item)
{
    const std::shared_ptr<ModelContainer> &container = sharedContainer();
    if (!container) {
        return std::nullopt;
    }
    ModelContext context(container);
    item.id = QUuid::createUuid();
    item.fileSizeBytes = fileSize(*item.localFileURL);
    item.stateRaw = QStringLiteral("done");
    item.createdAt = QDateTime::currentDateTimeUtc();
    item.completedAt = QDateTime::currentDateTimeUtc();
    item.thumbnailFileURL = findOrMakeThumbnail(*item.localFileURL);
    item.durationSeconds = mediaDuration(*item.localFileURL);
    context.insert(item);
    (void)context.save(); // the log has why it failed
    return item;
}

}

std::shared_ptr<ModelContainer> DownloadStorage::makeContainer()
{
    return veltro::makeContainer();
}

QCoro::Task<void> DownloadStorage::record(std::shared_ptr<DownloadProgressState> progress)
{
    DownloadItem item;
    item.sourceURL = progress->url();
    item.title = progress->title();
    item.formatLabel = progress->formatLabel();
    item.localFileURL = progress->localFileURL();
    if (!item.localFileURL) {
        co_return;
    }
    QFuture<std::optional<DownloadItem>> written =
        onRecordingQueue<std::optional<DownloadItem>>([item] { return writeItem(item); });
    const std::optional<DownloadItem> saved = co_await written;
    if (saved) {
        indexForSearch(*saved);
    }
}

std::optional<QUrl> DownloadStorage::cookieFile(const std::optional<QString> &host) const
{
    const std::optional<QUrl> file = host ? cookieFileURL(*host) : std::nullopt;
    return file && QFile::exists(file->toLocalFile()) ? file : std::nullopt;
}

QCoro::Task<std::optional<QUrl>> DownloadStorage::thumbnail(QUrl media) const
{
    QFuture<std::optional<QUrl>> picture =
        onRecordingQueue<std::optional<QUrl>>([media] { return findOrMakeThumbnail(media); });
    co_return co_await picture;
}

QCoro::Task<std::optional<double>> DownloadStorage::duration(QUrl media) const
{
    QFuture<std::optional<double>> seconds =
        onRecordingQueue<std::optional<double>>([media] { return mediaDuration(media); });
    co_return co_await seconds;
}

}
