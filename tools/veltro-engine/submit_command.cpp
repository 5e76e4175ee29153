// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "tools/veltro-engine/submit_command.h"

#include "coordination/page_links.h"
#include "tools/veltro-engine/headless_coordinator.h"
#include "tools/veltro-engine/json_lines.h"

#include <QCommandLineParser>
#include <QCoro/QCoroSignal>
#include <QMetaEnum>

#include <cstdio>

namespace veltro {
namespace {

QJsonObject recordToJson(const DownloadProgressState &record)
{
    const auto kind = QMetaEnum::fromType<ItemState::Kind>();
    QJsonObject object{{QStringLiteral("event"), QStringLiteral("record")},
                       {QStringLiteral("id"), record.id().toString(QUuid::WithoutBraces)},
                       {QStringLiteral("url"), record.url().toString(QUrl::FullyEncoded)},
                       {QStringLiteral("title"), record.title()},
                       {QStringLiteral("state"), QString::fromLatin1(kind.valueToKey(
                                                     static_cast<int>(record.state().kind)))}};
    if (!record.state().text.isEmpty()) {
        object.insert(QStringLiteral("text"), record.state().text);
    }
    if (record.localFileURL()) {
        object.insert(QStringLiteral("file"), record.localFileURL()->toLocalFile());
    }
    return object;
}

void printNowAndLater(const DownloadProgressState &record)
{
    const auto print = [&record] { printJsonLine(recordToJson(record)); };
    print();
    QObject::connect(&record, &DownloadProgressState::stateChanged, &record, print);
}

/// Prints every record when it comes and whenever its state changes, and every alert.
void printStates(MacAppStore &store)
{
    const ActiveDownloads *const downloads = store.activeDownloads();
    QObject::connect(downloads, &QAbstractItemModel::rowsInserted, downloads,
                     [downloads](const QModelIndex &, int first, int last) {
                         for (int row = first; row <= last; ++row) {
                             printNowAndLater(*downloads->record(row));
                         }
                     });
    QObject::connect(&store, &MacAppStore::showEngineErrorChanged, &store, [&store] {
        if (store.showEngineError()) {
            printJsonLine({{QStringLiteral("event"), QStringLiteral("alert")},
                           {QStringLiteral("text"), store.engineErrorText()}});
            store.setShowEngineError(false);
        }
    });
}

QCoro::Task<void> submitAll(MacAppStore &store, QStringList addresses, QString selector)
{
    for (const QString &address : addresses) {
        co_await store.startDownload(QUrl(address), selector);
    }
}

QCoro::Task<void> submitAsBatch(MacAppStore &store, QString lines)
{
    const auto expected = pageLinks(lines).size();
    store.submitBatch(lines);
    while (store.activeDownloads()->count() < expected) {
        co_await qCoro(store.activeDownloads(), &ActiveDownloads::countChanged);
    }
}

}

QCoro::Task<int> submitCommand(QStringList arguments)
{
    QCommandLineParser parser;
    const QString format = QStringLiteral("format");
    parser.addOption(QCommandLineOption(format, QString(), QStringLiteral("selector")));
    const bool isUnderstood = parser.parse(QStringList(QStringLiteral("submit")) + arguments);
    const QStringList addresses = parser.positionalArguments();
    if (!isUnderstood || addresses.isEmpty()) {
        std::fputs("usage: veltro-engine submit URL… [--format SELECTOR]\n", stderr);
        co_return 2;
    }
    HeadlessCoordinator coordinator;
    MacAppStore &store = coordinator.store();
    printStates(store);
    if (parser.isSet(format)) {
        co_await submitAll(store, addresses, parser.value(format));
    } else {
        co_await submitAsBatch(store, addresses.join(u'\n'));
    }
    const std::shared_ptr<Completion> last = store.inFlightTask();
    co_await last->wait();
    co_return store.activeDownloads()->doneCount() == addresses.size() ? 0 : 1;
}

}
