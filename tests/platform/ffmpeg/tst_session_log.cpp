// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/ffmpeg/av_ptr.h"
#include "platform/ffmpeg/libav.h"
#include "platform/ffmpeg/session_log.h"

#include <QTest>

#include <algorithm>
#include <barrier>
#include <memory>
#include <string>
#include <thread>
#include <vector>

using namespace veltro::ffmpeg;

namespace {

// On a thread that is bound to no log, as the libraries' own worker threads are.
template <typename Work>
void onAnotherThread(Work work)
{
    std::thread(work).join();
}

void sayOnAnotherThread(void *context, const char *text)
{
    onAnotherThread([=] { av_log(context, AV_LOG_ERROR, "%s", text); });
}

bool holds(const SessionLog &log, std::string_view text)
{
    return log.text().find(text) != std::string::npos;
}

}

class TestSessionLog : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void aLineBelongsToTheLogOfItsThread();
    void aLineOfAnotherThreadBelongsToTheLogThatItsContextNames();
    void aFilterIsAttributedThroughItsGraph();
    void aLineThatNamesNobodyBelongsToTheOnlyLogOrToNone();
    void aContextThatOutlivesItsLogIsNotFollowed();
    void takesTheCallbackBackFromAnotherLibrary();
    void prefixesALineOnceAsTheToolDoes();
    void leavesOutWhatTheLevelDoesNotLetPass();
    void keepsTheEndOfALongText();
    void readsLogLevelsAsTheToolDoes_data();
    void readsLogLevelsAsTheToolDoes();
    void manySessionsAtOnceNeverMix();
};

void TestSessionLog::aLineBelongsToTheLogOfItsThread()
{
    SessionLog outer;
    SessionLog inner;
    {
        const SessionLog::Scope outerScope(outer);
        av_log(nullptr, AV_LOG_ERROR, "one\n");
        {
            const SessionLog::Scope innerScope(inner);
            av_log(nullptr, AV_LOG_ERROR, "two\n");
        }
        av_log(nullptr, AV_LOG_ERROR, "three\n");
    }
    QCOMPARE(outer.text(), "one\nthree\n");
    QCOMPARE(inner.text(), "two\n");
}

void TestSessionLog::aLineOfAnotherThreadBelongsToTheLogThatItsContextNames()
{
    SessionLog first;
    SessionLog second;
    const OutputContextPtr format(avformat_alloc_context());
    const CodecContextPtr codec(avcodec_alloc_context3(nullptr));
    format->opaque = &first;
    codec->opaque = &second;
    sayOnAnotherThread(format.get(), "of the format\n");
    sayOnAnotherThread(codec.get(), "of the codec\n");
    QVERIFY(holds(first, "of the format\n") && !holds(first, "of the codec"));
    QVERIFY(holds(second, "of the codec\n") && !holds(second, "of the format"));
}

void TestSessionLog::aFilterIsAttributedThroughItsGraph()
{
    SessionLog named;
    const SessionLog other;
    const FilterGraphPtr graph(avfilter_graph_alloc());
    graph->opaque = &named;
    AVFilterContext *filter =
        avfilter_graph_alloc_filter(graph.get(), avfilter_get_by_name("null"), "a filter");
    QVERIFY(filter);
    sayOnAnotherThread(filter, "of the filter\n");
    sayOnAnotherThread(graph.get(), "of the graph\n");
    QVERIFY(holds(named, "of the filter\n") && holds(named, "of the graph\n"));
    QCOMPARE(other.text(), "");
}

void TestSessionLog::aLineThatNamesNobodyBelongsToTheOnlyLogOrToNone()
{
    SessionLog only;
    sayOnAnotherThread(nullptr, "while alone\n");
    {
        const SessionLog second;
        sayOnAnotherThread(nullptr, "while two\n");
        QCOMPARE(second.text(), "");
    }
    sayOnAnotherThread(nullptr, "alone again\n");
    QCOMPARE(only.text(), "while alone\nalone again\n");
}

void TestSessionLog::aContextThatOutlivesItsLogIsNotFollowed()
{
    const SessionLog first;
    const SessionLog second;
    auto shortLived = std::make_unique<SessionLog>();
    const CodecContextPtr codec(avcodec_alloc_context3(nullptr));
    codec->opaque = shortLived.get();
    shortLived.reset();
    sayOnAnotherThread(codec.get(), "of nobody\n");
    QCOMPARE(first.text(), "");
    QCOMPARE(second.text(), "");
}

void TestSessionLog::takesTheCallbackBackFromAnotherLibrary()
{
    av_log_set_callback([](void *, int, const char *, va_list) {});
    SessionLog log;
    const SessionLog::Scope scope(log);
    av_log(nullptr, AV_LOG_ERROR, "heard\n");
    QCOMPARE(log.text(), "heard\n");
}

void TestSessionLog::prefixesALineOnceAsTheToolDoes()
{
    SessionLog log;
    const SessionLog::Scope scope(log);
    const CodecContextPtr codec(avcodec_alloc_context3(avcodec_find_decoder(AV_CODEC_ID_AAC)));
    av_log(codec.get(), AV_LOG_ERROR, "in ");
    av_log(codec.get(), AV_LOG_ERROR, "two parts\n");
    const std::string text = log.text();
    QVERIFY2(text.starts_with("[aac @ 0x"), text.c_str());
    QVERIFY2(text.ends_with("] in two parts\n"), text.c_str());
    QCOMPARE(std::count(text.begin(), text.end(), '['), 1);
    av_log(nullptr, AV_LOG_ERROR, "a bell \x07 and an escape \x1b\n");
    QVERIFY(log.text().ends_with("a bell ? and an escape ?\n"));
}

void TestSessionLog::leavesOutWhatTheLevelDoesNotLetPass()
{
    SessionLog log;
    const SessionLog::Scope scope(log);
    const auto sayAll = [&log] {
        av_log(nullptr, AV_LOG_VERBOSE, "v");
        av_log(nullptr, AV_LOG_INFO | AV_LOG_C(134), "i"); // in colour
        log.write(AV_LOG_WARNING, "w");
        av_log(nullptr, AV_LOG_ERROR, "e");
    };
    sayAll();
    log.setLevel(AV_LOG_ERROR);
    sayAll();
    log.setLevel(AV_LOG_QUIET);
    sayAll();
    log.append("!");
    QCOMPARE(log.text(), "iwee!");
}

void TestSessionLog::keepsTheEndOfALongText()
{
    SessionLog log;
    for (int line = 0; line < 40'000; ++line) {
        log.append("this is line " + std::to_string(line) + "\n");
    }
    const std::string text = log.text();
    QVERIFY(text.size() > SessionLog::capacity / 2 && text.size() <= SessionLog::capacity);
    QVERIFY(text.starts_with("this is line "));
    QVERIFY(text.ends_with("this is line 39999\n"));
    log.append(std::string(3 * SessionLog::capacity, 'x')); // no line end at which to cut
    QVERIFY(log.text().size() <= SessionLog::capacity);
    QVERIFY(log.text().ends_with("xxx"));
}

void TestSessionLog::readsLogLevelsAsTheToolDoes_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<int>("expected"); // 1 stands for a refusal, 16 was in force
    QTest::newRow("a name") << QByteArray("verbose") << AV_LOG_VERBOSE;
    QTest::newRow("a number") << QByteArray("24") << 24;
    QTest::newRow("below all") << QByteArray("-8") << -8;
    QTest::newRow("what yt-dlp says") << QByteArray("repeat+info") << AV_LOG_INFO;
    QTest::newRow("two flags") << QByteArray("repeat+level+quiet") << AV_LOG_QUIET;
    QTest::newRow("a flag taken away") << QByteArray("-repeat+debug") << AV_LOG_DEBUG;
    QTest::newRow("flags alone") << QByteArray("repeat") << 16;
    QTest::newRow("a flag behind the level") << QByteArray("info+repeat") << 1;
    QTest::newRow("another base") << QByteArray("0x10") << 1;
    QTest::newRow("a word") << QByteArray("loud") << 1;
}

void TestSessionLog::readsLogLevelsAsTheToolDoes()
{
    QFETCH(QByteArray, text);
    QFETCH(int, expected);
    QCOMPARE(parseLogLevel(text.toStdString(), 16).value_or(1), expected);
}

void TestSessionLog::manySessionsAtOnceNeverMix()
{
    constexpr int sessions = 6;
    constexpr int lines = 2000;
    std::vector<int> strays(sessions, 0);
    std::barrier start(sessions);
    std::vector<std::thread> threads;
    threads.reserve(sessions);
    for (int session = 0; session < sessions; ++session) {
        threads.emplace_back([&, session] {
            const std::string mine = "session " + std::to_string(session) + "\n";
            start.arrive_and_wait();
            for (int round = 0; round < lines / 100; ++round) {
                SessionLog log;
                const CodecContextPtr codec(avcodec_alloc_context3(nullptr));
                codec->opaque = &log;
                std::thread worker([&] { // bound to no log
                    for (int line = 0; line < 50; ++line) {
                        av_log(codec.get(), AV_LOG_ERROR, "%s", mine.c_str());
                    }
                });
                {
                    const SessionLog::Scope scope(log);
                    for (int line = 0; line < 50; ++line) {
                        av_log(nullptr, AV_LOG_ERROR, "%s", mine.c_str());
                    }
                }
                worker.join();
                const QByteArray text = QByteArray::fromStdString(log.text());
                const auto count = text.count(QByteArray::fromStdString(mine));
                strays[static_cast<std::size_t>(session)] +=
                    count == 100 && text.count('\n') == 100 ? 0 : 1;
            }
        });
    }
    for (std::thread &thread : threads) {
        thread.join();
    }
    QCOMPARE(strays, std::vector<int>(sessions, 0));
}

QTEST_GUILESS_MAIN(TestSessionLog)
#include "tst_session_log.moc"
