// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
// Scrolls the program's window by wheel and keys, which come from the display at a fixed rate:
//
//     veltro-bench-frames program     100,000 items in the library, 500 rows and a run in the queue
//     veltro-bench-frames bare        the bare window, whose text moves by a pixel
//
// Prints one JSON object for each measurement, and ends with 1 when a list is not where it belongs
// at its end. Wants a home and a display of its own.
#include "benchmarks/window/frame_watch.h"
#include "engine/runtime/environment.h"
#include "engine/service/event_stream.h"
#include "library/model_container.h"
#include "library/model_context.h"
#include "library/search_indexer.h"
#include "platform/search_index.h"
#include "ui/app/program.h"
#include "ui/design/appearance.h"
#include "ui/library/library_screen.h"

#include <QDir>
#include <QEventLoop>
#include <QGuiApplication>
#include <QPainter>
#include <QQuickItem>
#include <QTimer>

#include <cstdio>
#include <functional>
#include <stdexcept>
#include <thread>

namespace veltro::bench {
namespace {

using namespace std::chrono_literals;

constexpr int libraryItems = 100'000;
constexpr int thumbnails = 60;
constexpr int queueRows = 500;
constexpr int inputCount = 300;
constexpr auto inputInterval = 16'667us; // 60 a second
constexpr auto eventInterval = 10ms;     // 100 a second
constexpr qint64 bytesOfEvent = 1'000;
constexpr auto longestWait = 60s;
constexpr auto settling = 2s;

constexpr xcb_keysym_t homeKey = 0xFF50;
constexpr xcb_keysym_t downKey = 0xFF54;
constexpr xcb_keysym_t endKey = 0xFF57;

QString titleOf(int number)
{
    return QStringLiteral("A walk through the old town, история и музыка, part %1").arg(number);
}

void demand(bool isSo, const char *what)
{
    if (!isSo) {
        throw std::runtime_error(what);
    }
}

void let(Clock::duration time)
{
    QEventLoop loop;
    QTimer::singleShot(std::chrono::duration_cast<std::chrono::milliseconds>(time), &loop,
                       &QEventLoop::quit);
    loop.exec();
}

void waitUntil(const char *what, const std::function<bool()> &condition)
{
    const auto deadline = Clock::now() + longestWait;
    while (!condition()) {
        demand(Clock::now() < deadline, what);
        let(20ms);
    }
}

void print(const char *key, const std::vector<double> &values, const char *after)
{
    std::printf("\"%s\": [", key);
    for (std::size_t place = 0; place < values.size(); ++place) {
        std::printf("%s%.6f", place == 0 ? "" : ", ", values[place]);
    }
    std::printf("]%s", after);
}

/// Gives the window inputs at the fixed rate, and prints what it made of them.
void measure(const std::string &name, FrameWatch &watch,
             const std::function<void(Display &)> &giveInput)
{
    watch.begin();
    QEventLoop loop;
    std::jthread hand([&] {
        Display display(Display::Watches::nothing);
        auto next = Clock::now();
        for (int number = 0; number < inputCount; ++number) {
            std::this_thread::sleep_until(next += inputInterval);
            watch.noteInput();
            giveInput(display);
        }
        const auto deadline = Clock::now() + longestWait;
        while (!watch.isAnswered() && Clock::now() < deadline) {
            std::this_thread::sleep_for(5ms);
        }
        QMetaObject::invokeMethod(&loop, &QEventLoop::quit, Qt::QueuedConnection);
    });
    loop.exec();
    demand(watch.isAnswered(), "not every input was answered by a frame");
    const FrameFigures figures = watch.end();
    std::printf("{\"name\": \"%s\", ", name.c_str());
    print("inputToFrame", figures.inputToFrame, ", ");
    print("mainThread", figures.mainThread, "}\n");
    std::fflush(stdout);
    let(settling);
}

/// A list or grid of the window, and where it stands.
class View {
public:
    View(QQuickWindow &window, const char *type)
    {
        waitUntil("there is no list", [&] { return (m_item = find(window.contentItem(), type)); });
    }

    [[nodiscard]] int count() const { return m_item->property("count").toInt(); }
    [[nodiscard]] double position() const { return m_item->property("contentY").toReal(); }
    [[nodiscard]] double start() const
    {
        return m_item->property("originY").toReal() - m_item->property("topMargin").toReal();
    }
    /// Just before the end of the last line.
    [[nodiscard]] double end() const
    {
        return m_item->property("originY").toReal() + m_item->property("contentHeight").toReal() -
               1;
    }
    [[nodiscard]] bool shows(double place) const
    {
        return place >= position() && place <= position() + m_item->height();
    }
    [[nodiscard]] bool isAt(double place) const { return qAbs(position() - place) < 1; }
    [[nodiscard]] QPoint middle() const
    {
        const QPointF inScene = m_item->mapToScene({m_item->width() / 2, m_item->height() / 2});
        return m_item->window()->mapToGlobal(inScene.toPoint());
    }
    [[nodiscard]] QQuickItem &item() const { return *m_item; }

private:
    static QQuickItem *find(QQuickItem *in, const char *type)
    {
        if (in->inherits(type) && in->isVisible() && in->property("count").toInt() > 0 &&
            in->height() > 300) {
            return in;
        }
        for (QQuickItem *child : in->childItems()) {
            if (QQuickItem *found = find(child, type)) {
                return found;
            }
        }
        return nullptr;
    }

    QQuickItem *m_item = nullptr;
};

void turnWheel(const std::string &where, const View &view, FrameWatch &watch)
{
    Display display(Display::Watches::nothing);
    const QPoint pointer = view.middle();
    display.movePointer(pointer.x(), pointer.y());
    let(settling);
    demand(view.isAt(view.start()), "a list does not begin at its start");
    measure(where + ", wheel down", watch, [](Display &hand) { hand.turnWheel(true); });
    const double lowest = view.position();
    demand(lowest > view.start() + 10 * view.item().height(), "the wheel did not scroll down");
    measure(where + ", wheel up", watch, [](Display &hand) { hand.turnWheel(false); });
    demand(view.position() < lowest - 10 * view.item().height(), "the wheel did not scroll up");
}

void pressKeys(const std::string &where, FrameWatch &watch)
{
    measure(where + ", keys", watch, [](Display &hand) { hand.press(downKey); });
}

/// What a download reports to its record, as the engine does it: from a thread of its own.
class SampleRun {
public:
    explicit SampleRun(std::shared_ptr<DownloadProgressState> record) : m_record(std::move(record))
    {
        EventStream<DownloadEvent> stream;
        m_engine = std::jthread([this, producer = stream.producer()](const std::stop_token &stop) {
            auto next = Clock::now();
            while (!stop.stop_requested()) {
                DownloadProgressed event;
                event.bytesDone = ++m_events * bytesOfEvent;
                event.bytesTotal = 100'000 * bytesOfEvent;
                event.speed = 1e5 + double(m_events % 7) * 1e4;
                event.eta = 1e3 - double(m_events) / 100;
                producer.yield(event);
                std::this_thread::sleep_until(next += eventInterval);
            }
            producer.finish();
        });
        m_following = follow(std::move(stream), m_record);
    }

    /// Ends it; the record has all of its bytes.
    void end()
    {
        m_engine.request_stop();
        m_engine.join();
        waitUntil("a run does not end", [this] { return m_following.isReady(); });
        demand(m_record->bytesDone() == m_events * bytesOfEvent, "bytes of a run were lost");
    }

private:
    static QCoro::Task<void> follow(EventStream<DownloadEvent> events,
                                    std::shared_ptr<DownloadProgressState> record)
    {
        EventStream<DownloadEvent> stream = std::move(events);
        while (const std::optional<DownloadEvent> event = co_await stream.next()) {
            record->apply(*event);
        }
    }

    const std::shared_ptr<DownloadProgressState> m_record;
    std::atomic<qint64> m_events = 0;
    std::jthread m_engine;
    QCoro::Task<void> m_following;
};

void scrollLibrary(Program &program, FrameWatch &watch)
{
    program.store().setSelectedTab(MacTab::library);
    const View grid(*program.window(), "QQuickGridView");
    waitUntil("the library is not loaded", [&] { return grid.count() == libraryItems; });
    turnWheel("library", grid, watch);
    Display display(Display::Watches::nothing);
    display.press(homeKey);
    let(settling);
    auto *const screen = program.window()->findChild<LibraryScreen *>();
    const int first = screen->selection()->currentRow();
    pressKeys("library", watch);
    const int row = screen->selection()->currentRow();
    demand(row == first + inputCount * screen->columns(), "keys of the library were lost");
    const int line = row / screen->columns();
    const double top = line * grid.item().property("cellHeight").toReal();
    demand(grid.shows(top), "the library does not show the row that the keys have chosen");
    display.press(endKey);
    let(settling);
    demand(grid.shows(grid.end()), "the library is not at its end");
}

void fillQueue(ActiveDownloads &downloads)
{
    for (int number = 0; number < queueRows; ++number) {
        const auto record = std::make_shared<DownloadProgressState>(DownloadOrder{
            QUuid::createUuid(), QUrl(QStringLiteral("https://example.com/watch?v=%1").arg(number)),
            QStringLiteral("best"), QStringLiteral("1080p")});
        record->setTitle(titleOf(number));
        if (number == 0) {
            record->setState({ItemState::Kind::running, {}});
        } else if (number % 3 == 0) {
            record->apply(DownloadProgressed{84'300'000, 84'300'000, {}, {}, {}, {}});
            record->setState(ItemState::postProcessing(QStringLiteral("Merger")));
        }
        downloads.append(record);
    }
}

void scrollQueue(Program &program, FrameWatch &watch)
{
    ActiveDownloads &downloads = *program.store().activeDownloads();
    fillQueue(downloads);
    program.store().setSelectedTab(MacTab::downloads);
    const View list(*program.window(), "QQuickListView");
    SampleRun run(downloads.record(0));
    turnWheel("queue with a run", list, watch);
    const int first = list.item().property("currentIndex").toInt();
    pressKeys("queue with a run", watch);
    demand(list.item().property("currentIndex").toInt() == first + inputCount,
           "keys of the queue were lost");
    demand(list.item().property("currentItem").value<QQuickItem *>()->isVisible(),
           "the queue does not show the row that the keys have chosen");
    run.end();
}

void makePictures(const QString &folder)
{
    QDir().mkpath(folder);
    for (int number = 0; number < thumbnails; ++number) {
        QImage picture(640, 360, QImage::Format_RGB32);
        QLinearGradient sky(0, 0, 640, 360);
        sky.setColorAt(0, QColor::fromHsv(number * 6, 120, 230));
        sky.setColorAt(1, QColor::fromHsv(number * 6, 200, 90));
        QPainter(&picture).fillRect(picture.rect(), sky);
        demand(picture.save(QStringLiteral("%1/%2.jpg").arg(folder).arg(number)), "no picture");
    }
}

void prepareLibrary()
{
    const std::shared_ptr<ModelContainer> container = makeContainer();
    demand(container != nullptr, "there is no library");
    const QString pictures = QFileInfo(container->file()).path() + QStringLiteral("/pictures");
    makePictures(pictures);
    ModelContext context(container);
    for (int number = 0; number < libraryItems; ++number) {
        DownloadItem item;
        item.id = QUuid::createUuid();
        item.title = titleOf(number);
        item.uploader = QStringLiteral("Channel %1").arg(number % 977);
        item.durationSeconds = number % 7'200;
        item.thumbnailFileURL =
            QUrl::fromLocalFile(QStringLiteral("%1/%2.jpg").arg(pictures).arg(number % thumbnails));
        item.createdAt = QDateTime::fromSecsSinceEpoch(1'600'000'000 + number);
        item.completedAt = item.createdAt;
        context.insert(item);
    }
    demand(context.save(), "the library cannot be filled");
    // As each entry is when it is saved: else the program would do it while it is watched.
    indexWhatIsMissing(*container, SearchIndex::standard());
}

void measureProgram()
{
    applyAppearance();
    prepareLibrary();
    Program program;
    demand(program.start(), "there is no window");
    waitUntil("the engine is not ready", [&] { return program.store().engineReady(); });
    FrameWatch watch(*program.window());
    scrollLibrary(program, watch);
    scrollQueue(program, watch);
    std::printf("{\"frames\": %d}\n", watch.frames());
}

void measureBare()
{
    QQuickWindow::setTextRenderType(QQuickWindow::NativeTextRendering);
    QQmlApplicationEngine engine;
    engine.load(QUrl(QStringLiteral("qrc:/qt/qml/Veltro/Bench/BareWindow.qml")));
    auto *const window = qobject_cast<QQuickWindow *>(engine.rootObjects().value(0));
    demand(window != nullptr, "there is no window");
    let(settling);
    FrameWatch watch(*window);
    Display display(Display::Watches::nothing);
    const QPoint middle = window->mapToGlobal(QPoint(window->width(), window->height()) / 2);
    display.movePointer(middle.x(), middle.y());
    let(settling);
    measure("bare window, wheel", watch, [](Display &hand) { hand.turnWheel(true); });
    std::printf("{\"frames\": %d}\n", watch.frames());
}

}
}

int main(int argc, char *argv[])
{
    const std::string what = argc == 2 ? argv[1] : "";
    veltro::setInterpreterEnvironment();
    const QGuiApplication application(argc, argv);
    QGuiApplication::setApplicationName(QStringLiteral("veltro"));
    try {
        if (what == "program") {
            veltro::bench::measureProgram();
        } else if (what == "bare") {
            veltro::bench::measureBare();
        } else {
            std::fputs("usage: veltro-bench-frames program|bare\n", stderr);
            return 2;
        }
    } catch (const std::exception &error) {
        std::fprintf(stderr, "%s\n", error.what());
        return 1;
    }
    return 0;
}
