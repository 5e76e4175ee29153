// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "engine/service/event_stream.h"

#include <QCoro/QCoroTask>
#include <QTest>
#include <QTimer>

#include <atomic>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

using namespace veltro;

namespace {

using Numbers = EventStream<int>;

/// Reads a stream to its end; what ended it is rethrown.
QCoro::Task<std::vector<int>> readAll(Numbers &stream)
{
    std::vector<int> read;
    while (std::optional<int> number = co_await stream.next()) {
        read.push_back(*number);
    }
    co_return read;
}

/// One event as a text, the error that ended the stream, or "end".
QCoro::Task<std::string> readOne(Numbers &stream)
{
    std::string read;
    try {
        const std::optional<int> number = co_await stream.next();
        read = number ? std::to_string(*number) : "end";
    } catch (const std::runtime_error &error) {
        read = error.what();
    }
    co_return read;
}

}

class TestEventStream : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void eventsOfAnotherThreadArriveInOrderAndTheLoopStaysAlive();
    void anErrorComesAfterTheEventsBeforeIt();
    void whatComesAfterTheEndIsDropped();
    void theEndIsReportedOnceWhoeverBringsIt();
};

void TestEventStream::eventsOfAnotherThreadArriveInOrderAndTheLoopStaysAlive()
{
    constexpr int count = 20'000;
    Numbers stream;
    int ticks = 0;
    QTimer timer;
    connect(&timer, &QTimer::timeout, this, [&ticks] { ++ticks; });
    timer.start(0);
    std::atomic<bool> ticked = false;
    std::thread writer([producer = stream.producer(), &ticked] {
        for (int i = 0; i < count; ++i) {
            producer.yield(i);
            if (i == count / 2) {
                ticked.wait(false); // the second half waits until the loop has turned
            }
        }
        producer.finish();
    });
    connect(&timer, &QTimer::timeout, this, [&ticked] {
        ticked = true;
        ticked.notify_one();
    });
    const std::vector<int> read = QCoro::waitFor(readAll(stream));
    writer.join();
    QCOMPARE(read.size(), std::size_t(count));
    QVERIFY(std::is_sorted(read.begin(), read.end()));
    QVERIFY(ticks > 0);
}

void TestEventStream::anErrorComesAfterTheEventsBeforeIt()
{
    Numbers stream;
    const auto producer = stream.producer();
    producer.yield(1);
    producer.fail(std::make_exception_ptr(std::runtime_error("broken")));
    QCOMPARE(QCoro::waitFor(readOne(stream)), std::string("1"));
    QCOMPARE(QCoro::waitFor(readOne(stream)), std::string("broken"));
    QCOMPARE(QCoro::waitFor(readOne(stream)), std::string("end")); // an error is thrown once
}

void TestEventStream::whatComesAfterTheEndIsDropped()
{
    Numbers stream;
    const auto producer = stream.producer();
    producer.yield(1);
    producer.finish();
    producer.yield(2);
    producer.fail(std::make_exception_ptr(std::runtime_error("late")));
    QCOMPARE(QCoro::waitFor(readAll(stream)), std::vector<int>{1});
}

void TestEventStream::theEndIsReportedOnceWhoeverBringsIt()
{
    int ends = 0;
    {
        Numbers stream;
        stream.producer().onTermination([&ends] { ++ends; });
        stream.producer().finish();
        QCOMPARE(ends, 1);
    }
    QCOMPARE(ends, 1);
    {
        Numbers dropped;
        dropped.producer().onTermination([&ends] { ++ends; });
        const Numbers moved = std::move(dropped);
        QCOMPARE(ends, 1);
    }
    QCOMPARE(ends, 2);
    Numbers stream;
    stream.producer().finish();
    stream.producer().onTermination([&ends] { ++ends; }); // late, and told at once
    QCOMPARE(ends, 3);
}

QTEST_GUILESS_MAIN(TestEventStream)
#include "tst_event_stream.moc"
