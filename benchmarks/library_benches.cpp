// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
// What the library costs. Prints one JSON object for each measurement:
//
//     veltro-bench-library fill STORE COUNT
//     veltro-bench-library open STORE ROWS           one line the moment the model has so many
//     veltro-bench-library profile STORE ROWS        tells then what it had worked until when
//     veltro-bench-library query STORE ROWS TIMES    the rows of the model's query, over and over
//     veltro-bench-library search STORE TEXT         a keystroke for each letter
//     veltro-bench-library insert STORE COUNT        by a container of another thread
//
// Main-thread times are of its own work, not of the clock.
#include "benchmarks/sample_titles.h"
#include "library/database.h"
#include "library/library_items_model.h"
#include "library/model_container.h"
#include "library/model_context.h"
#include "platform/serial_queue.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QEventLoop>

#include <cstdio>
#include <ctime>
#include <functional>

namespace veltro {
namespace {

/// Seconds that this thread has worked.
double workedSeconds()
{
    timespec time{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return double(time.tv_sec) + double(time.tv_nsec) / 1e9;
}

/// Seconds that all threads have worked since the process began.
double workedInAll()
{
    timespec time{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time);
    return double(time.tv_sec) + double(time.tv_nsec) / 1e9;
}

void waitUntil(const std::function<bool()> &isOver)
{
    while (!isOver()) {
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }
}

DownloadItem itemAt(int number)
{
    const QString name = sampleTitle(number);
    DownloadItem item;
    item.id = QUuid::createUuid();
    item.sourceURL = QUrl(QStringLiteral("https://example.com/watch?v=%1").arg(number));
    item.title = name;
    item.uploader = QStringLiteral("Channel %1 %2").arg(number % 977).arg(sampleWord(number, 3));
    item.durationSeconds = number % 7'200;
    item.localFileURL = QUrl::fromLocalFile(QStringLiteral("/media/Downloads/%1.mp4").arg(name));
    item.thumbnailFileURL =
        QUrl::fromLocalFile(QStringLiteral("/media/Downloads/%1.jpg").arg(name));
    item.formatLabel = QStringLiteral("1080p");
    item.fileSizeBytes = qint64{number} * 1'000;
    item.stateRaw = QStringLiteral("done");
    item.createdAt = QDateTime::fromMSecsSinceEpoch(1'600'000'000'000 + qint64{number} * 1'000);
    item.completedAt = item.createdAt;
    return item;
}

void fill(const std::shared_ptr<ModelContainer> &container, int count)
{
    ModelContext context(container);
    for (int number = 0; number < count; ++number) {
        context.insert(itemAt(number));
    }
    (void)context.save();
}

void load(LibraryItemsModel &model, const std::shared_ptr<ModelContainer> &container)
{
    model.setContainer(container);
    waitUntil([&model] { return model.isLoaded(); });
}

void query(const std::shared_ptr<ModelContainer> &container, std::size_t rows, int times)
{
    Database database = container->openForReading();
    const SearchFolding folding = SearchFolding::ofUser();
    QElapsedTimer timer;
    timer.start();
    for (int time = 0; time < times; ++time) {
        Statement statement = LibraryQuery::newest(database, folding, 0);
        LibraryRows made;
        while (made.size() < rows && statement.step()) {
            made.push_back(std::make_shared<const LibraryRow>(statement));
        }
    }
    std::printf("{\"query\": %.9f}\n", double(timer.nsecsElapsed()) / 1e9 / times);
}

void search(const std::shared_ptr<ModelContainer> &container, const QString &text)
{
    LibraryItemsModel model;
    load(model, container);
    bool isAnswered = false;
    QObject::connect(&model, &LibraryItemsModel::searchAnswered, &model,
                     [&isAnswered] { isAnswered = true; });
    for (qsizetype length = 1; length <= text.size(); ++length) {
        isAnswered = false;
        QElapsedTimer timer;
        timer.start();
        const double before = workedSeconds();
        model.setSearch(text.left(length));
        waitUntil([&isAnswered] { return isAnswered; });
        std::printf("{\"letters\": %lld, \"rows\": %d, \"worked\": %.6f, \"answered\": %.6f}\n",
                    static_cast<long long>(length), model.count(), workedSeconds() - before,
                    double(timer.nsecsElapsed()) / 1e9);
    }
}

void insert(const std::shared_ptr<ModelContainer> &container, int count)
{
    LibraryItemsModel model;
    load(model, container);
    SerialQueue writer("writer");
    for (int number = 0; number < count; ++number) {
        const int rows = model.count();
        const double before = workedSeconds();
        writer.async([&container, number] {
            ModelContext context(container);
            context.insert(itemAt(1'000'000 + number));
            (void)context.save();
        });
        waitUntil([&] { return model.count() > rows; });
        std::printf("{\"worked\": %.6f}\n", workedSeconds() - before);
    }
}

struct Start {
    double loaded = 0;
    double toolkit = 0;
};

void open(const std::shared_ptr<ModelContainer> &container, int rows)
{
    LibraryItemsModel model;
    model.setContainer(container);
    waitUntil([&] { return model.count() >= rows; });
    std::puts("{}");
    std::fflush(stdout);
}

void profile(const std::shared_ptr<ModelContainer> &container, int rows, const Start &start)
{
    const double store = workedInAll();
    LibraryItemsModel model;
    model.setContainer(container);
    waitUntil([&] { return model.count() >= rows; });
    std::printf("{\"loaded\": %.6f, \"toolkit\": %.6f, \"store\": %.6f, \"rows\": %.6f}\n",
                start.loaded, start.toolkit, store, workedInAll());
}

int run(const QStringList &arguments, const Start &start)
{
    if (arguments.size() < 3) {
        return 2; // without a store's name a nameless one would be made here
    }
    const QString what = arguments.value(1);
    const std::shared_ptr<ModelContainer> container = makeContainer(arguments.value(2));
    if (!container) {
        return 1;
    }
    if (what == QLatin1String("fill")) {
        fill(container, arguments.value(3).toInt());
    } else if (what == QLatin1String("profile")) {
        profile(container, arguments.value(3).toInt(), start);
    } else if (what == QLatin1String("query")) {
        query(container, arguments.value(3).toULong(), arguments.value(4).toInt());
    } else if (what == QLatin1String("search")) {
        search(container, arguments.value(3));
    } else if (what == QLatin1String("insert")) {
        insert(container, arguments.value(3).toInt());
    } else {
        open(container, arguments.value(3).toInt());
    }
    return 0;
}

}
}

int main(int argc, char *argv[])
{
    const double loaded = veltro::workedInAll();
    const QCoreApplication application(argc, argv);
    return veltro::run(QCoreApplication::arguments(), {loaded, veltro::workedInAll()});
}
