// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
// What downloads cost the main thread. Prints one JSON object for each measurement:
//
//     veltro-bench-coordination events | queue URL-THAT-HOLDS
//
// Times are of the main thread's own work, not of the clock: what else the machine does is in
// neither side of a comparison.
#include "coordination/download_progress_state.h"
#include "engine/service/event_stream.h"
#include "tools/veltro-engine/headless_coordinator.h"

#include <QCoro/QCoroTask>
#include <QGuiApplication>
#include <QQuickItem>
#include <QQuickView>
#include <QTemporaryDir>
#include <QTimer>

#include <algorithm>
#include <cstdio>
#include <ctime>
#include <functional>
#include <thread>

namespace veltro {
namespace {

constexpr int eventCount = 20'000;

/// Seconds that this thread has worked.
double workedSeconds()
{
    timespec time{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return double(time.tv_sec) + double(time.tv_nsec) / 1e9;
}

DownloadProgressed eventAt(int index)
{
    DownloadProgressed event;
    event.bytesDone = qint64(index) + 1;
    event.bytesTotal = eventCount;
    event.speed = 1'000.0 + index % 7;
    event.eta = double(eventCount - index) / 1'000;
    return event;
}

/// Stands for the row that shows a record: reads what has changed, as a binding does.
class Row : public QObject {
public:
    explicit Row(const DownloadProgressState &record)
    {
        connect(&record, &DownloadProgressState::bytesDoneChanged, this, [this, &record] {
            isInOrder = isInOrder && record.bytesDone() == lastBytes + 1;
            lastBytes = record.bytesDone();
            ++notices;
        });
        connect(&record, &DownloadProgressState::speedBytesPerSecondChanged, this,
                [this, &record] { note(record.speedBytesPerSecond()); });
        connect(&record, &DownloadProgressState::etaSecondsChanged, this,
                [this, &record] { note(record.etaSeconds()); });
        connect(&record, &DownloadProgressState::bytesTotalChanged, this, [this] { ++notices; });
    }

    qint64 lastBytes = 0;
    qint64 notices = 0;
    bool isInOrder = true;

private:
    void note(std::optional<double> value)
    {
        sum += value.value_or(0);
        ++notices;
    }
    double sum = 0;
};

QCoro::Task<void> follow(EventStream<DownloadEvent> events, DownloadProgressState *record)
{
    EventStream<DownloadEvent> stream = std::move(events);
    while (const std::optional<DownloadEvent> event = co_await stream.next()) {
        record->apply(*event);
    }
    QCoreApplication::exit();
}

void byStream(DownloadProgressState &record)
{
    EventStream<DownloadEvent> stream;
    const auto producer = stream.producer();
    const auto task = follow(std::move(stream), &record);
    std::thread engine([producer] {
        for (int index = 0; index < eventCount; ++index) {
            producer.yield(eventAt(index));
        }
        producer.finish();
    });
    QCoreApplication::exec();
    engine.join();
}

void byQueuedCalls(DownloadProgressState &record)
{
    std::thread engine([&record] {
        for (int index = 0; index < eventCount; ++index) {
            QMetaObject::invokeMethod(
                &record, [&record, event = DownloadEvent(eventAt(index))] { record.apply(event); },
                Qt::QueuedConnection);
        }
        QMetaObject::invokeMethod(
            qApp, [] { QCoreApplication::exit(); }, Qt::QueuedConnection);
    });
    QCoreApplication::exec();
    engine.join();
}

/// Seconds of main-thread work; below 0 when an event was lost or came out of turn.
double timeOf(const std::function<void(DownloadProgressState &)> &way, qint64 &notices)
{
    DownloadProgressState record({QUuid::createUuid(), QUrl(), {}, {}});
    const Row row(record);
    const double begin = workedSeconds();
    way(record);
    const double worked = workedSeconds() - begin;
    notices = row.notices;
    return row.isInOrder && row.lastBytes == eventCount ? worked : -1;
}

int measureEvents()
{
    constexpr int pairs = 15;
    for (int pair = -1; pair < pairs; ++pair) {
        qint64 ourNotices = 0;
        qint64 theirNotices = 0;
        const double ours = timeOf(byStream, ourNotices);
        const double baseline = timeOf(byQueuedCalls, theirNotices);
        if (pair >= 0) { // the first pair warms up
            std::printf("{\"ours\": %.6f, \"baseline\": %.6f, \"events\": %d, \"notices\": %lld, "
                        "\"baselineNotices\": %lld}\n",
                        ours, baseline, eventCount, static_cast<long long>(ourNotices),
                        static_cast<long long>(theirNotices));
        }
    }
    return 0;
}

/// Looks at the clock whenever the event loop comes round: the longest time between two looks is
/// how long nobody else got a turn.
class StallWatch : public QObject {
public:
    StallWatch()
    {
        m_timer.setInterval(0);
        connect(&m_timer, &QTimer::timeout, this, [this] { look(); });
        m_timer.start();
        m_last = workedSeconds();
    }
    double takeLongest() { return std::exchange(m_longest, 0); }

private:
    void look()
    {
        const double now = workedSeconds();
        m_longest = std::max(m_longest, now - m_last);
        m_last = now;
    }

    QTimer m_timer;
    double m_last = 0;
    double m_longest = 0;
};

constexpr const char *listPage = R"(
import QtQuick
ListView {
    id: root
    width: 800; height: 600
    delegate: Rectangle {
        required property var record
        width: root.width; height: 90
        Text { text: record?.title ?? "" }
        Text { y: 20; text: record?.url ?? "" }
        Text { y: 40; text: record?.state.kind ?? "" }
        Text { y: 60; text: record?.bytesDone ?? "" }
    }
}
)";

void waitUntil(const std::function<bool()> &condition)
{
    while (!condition()) {
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }
}

void printStall(const char *what, double seconds, int count)
{
    std::printf("{\"what\": \"%s\", \"stall\": %.6f, \"count\": %d}\n", what, seconds, count);
    std::fflush(stdout);
}

/// Queues the links from the event loop, one in each turn.
void queueOneByOne(MacAppStore &store, const QUrl &page, int count)
{
    Format format;
    format.id = QStringLiteral("best");
    format.ext = QStringLiteral("mp4");
    QTimer turns;
    int queued = 0;
    QObject::connect(&turns, &QTimer::timeout, &turns, [&] {
        store.beginFormatPick(page, format);
        if (++queued == count) {
            turns.stop();
        }
    });
    turns.start(0);
    waitUntil([&] { return queued == count; });
}

int measureQueue(const QString &held)
{
    constexpr int batch = 300;
    constexpr int picked = 10'000;
    const QTemporaryDir home;
    for (const char *name : {"HOME", "XDG_CONFIG_HOME", "XDG_DATA_HOME"}) {
        qputenv(name, home.path().toUtf8());
    }
    HeadlessCoordinator coordinator;
    MacAppStore &store = coordinator.store();
    ActiveDownloads *const downloads = store.activeDownloads();
    QQuickView view;
    QQmlComponent component(view.engine());
    component.setData(listPage, {});
    auto *const list = qobject_cast<QQuickItem *>(component.create());
    list->setProperty("model", QVariant::fromValue<QObject *>(downloads));
    view.setContent({}, &component, list);
    view.show();

    // The first run stays, so that what is measured is the queue and not the runs.
    queueOneByOne(store, QUrl(held), 1);
    waitUntil([&] { return downloads->queuedCount() == 0 || downloads->finishedCount() > 0; });
    StallWatch watch;
    store.submitBatch(QString(held + u'\n').repeated(batch));
    waitUntil([&] { return downloads->count() == 1 + batch; });
    printStall("300 links through submitBatch", watch.takeLongest(), batch);
    queueOneByOne(store, QUrl(held), picked);
    printStall("10,000 through completeFormatPick", watch.takeLongest(), picked);
    const bool isAllThere = downloads->count() == 1 + batch + picked &&
                            list->property("count").toInt() == downloads->count();
    std::fflush(stdout);
    std::_Exit(isAllThere ? 0 : 1); // the run under way is of no interest
}

}
}

int main(int argc, char *argv[])
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qputenv("QT_QUICK_BACKEND", "software");
    const QGuiApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments().mid(1);
    if (arguments == QStringList{QStringLiteral("events")}) {
        return veltro::measureEvents();
    }
    if (arguments.size() == 2 && arguments.first() == QStringLiteral("queue")) {
        return veltro::measureQueue(arguments.last());
    }
    std::fputs("usage: veltro-bench-coordination events | queue URL\n", stderr);
    return 2;
}
