// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/byte_count.h"
#include "platform/log.h"
#include "platform/serial_queue.h"

#include <QTest>

#include <stdexcept>
#include <string>
#include <vector>

using namespace veltro;

class TestPlatform : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void aSizeReadsAsInAFileBrowser_data();
    void aSizeReadsAsInAFileBrowser();
    void aLineOfTheLogCannotBeForged();
    void aQueueRunsItsWorkInOrderOnOneNamedThread();
    void waitingForAQueueHandsBackTheValueOrTheError();
    void aQueueFinishesWhatItHoldsBeforeItEnds();
};

void TestPlatform::aSizeReadsAsInAFileBrowser_data()
{
    QTest::addColumn<qint64>("bytes");
    QTest::addColumn<QString>("text");
    const auto row = [](const char *why, qint64 bytes, const char *text) {
        QTest::newRow(why) << bytes << QString::fromLatin1(text);
    };
    row("nothing has a name of its own", 0, "Zero KB");
    row("one byte is singular", 1, "1 byte");
    row("bytes up to a thousand", 999, "999 bytes");
    row("KB have no fraction", 1500, "2 KB");
    row("KB round", 1499, "1 KB");
    row("rounding up may reach the next unit", 999'600, "1 MB");
    row("just below that it does not", 999'400, "999 KB");
    row("MB have one digit", 1'250'000, "1.3 MB");
    row("a trailing zero is dropped", 3'000'000, "3 MB");
    row("MB that round to a thousand are a GB", 999'960'000, "1 GB");
    row("GB have two digits", 1'234'000'000, "1.23 GB");
    row("one trailing zero of two is dropped", 1'200'000'000, "1.2 GB");
    row("TB too", 2'345'678'900'000, "2.35 TB");
    row("the largest count", std::numeric_limits<qint64>::max(), "9.22 EB");
    row("a negative count keeps its sign", -1500, "-2 KB");
    row("the smallest count", std::numeric_limits<qint64>::min(), "-9.22 EB");
}

void TestPlatform::aSizeReadsAsInAFileBrowser()
{
    QFETCH(qint64, bytes);
    QFETCH(QString, text);
    QCOMPARE(fileByteCount(bytes), text);
}

void TestPlatform::aLineOfTheLogCannotBeForged()
{
    std::vector<std::string> lines;
    setLogSink([&lines](std::string_view line) { lines.emplace_back(line); });
    logLine(LogTag::engine, "title\n[veltro] forged\r\x1b[31mred\x7f, Größe");
    logLine(LogTag::ffmpeg, "plain");
    setLogSink({});
    QCOMPARE(lines.size(), std::size_t(2));
    QCOMPARE(lines[0], std::string("[veltro] title [veltro] forged  [31mred , Größe"));
    QCOMPARE(lines[1], std::string("[ffmpeg] plain"));
}

void TestPlatform::aQueueRunsItsWorkInOrderOnOneNamedThread()
{
    SerialQueue queue("com.veltro.test.of-the-queue");
    std::vector<int> order; // touched by the queue's thread alone until sync() returns
    std::vector<std::thread::id> threads;
    for (int i = 0; i < 1000; ++i) {
        queue.async([&, i] {
            order.push_back(i);
            threads.push_back(std::this_thread::get_id());
        });
    }
    const std::string name = queue.sync([] {
        std::array<char, 16> text{};
        pthread_getname_np(pthread_self(), text.data(), text.size());
        return std::string(text.data());
    });
    QVERIFY(std::is_sorted(order.begin(), order.end()));
    QCOMPARE(order.size(), std::size_t(1000));
    QCOMPARE(std::count(threads.begin(), threads.end(), threads.front()), 1000);
    QVERIFY(threads.front() != std::this_thread::get_id());
    QCOMPARE(name, std::string("st.of-the-queue"));
    QVERIFY(!queue.isCurrent());
    QVERIFY(queue.sync([&queue] { return queue.isCurrent(); }));
}

void TestPlatform::waitingForAQueueHandsBackTheValueOrTheError()
{
    SerialQueue queue("com.veltro.test");
    QCOMPARE(queue.sync([] { return 41 + 1; }), 42);
    QVERIFY_THROWS_EXCEPTION(std::runtime_error,
                             queue.sync([] { throw std::runtime_error("no"); }));
    QCOMPARE(queue.sync([] { return 1; }), 1); // the thread has survived the error
}

void TestPlatform::aQueueFinishesWhatItHoldsBeforeItEnds()
{
    int done = 0;
    {
        SerialQueue queue("com.veltro.test");
        for (int i = 0; i < 100; ++i) {
            queue.async([&done] { ++done; });
        }
    }
    QCOMPARE(done, 100);
}

QTEST_GUILESS_MAIN(TestPlatform)
#include "tst_platform.moc"
