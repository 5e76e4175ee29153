// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/platform/ffmpeg/runner_support.h"
#include "tests/site/test_site.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace veltro;
using namespace veltro::ffmpeg;

// Downloads that yt-dlp leaves to ffmpeg: command lines in its order, against a site on the
// loopback address, with the stock tool as the measure.
class TestRunnerNetwork : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void savesTheSameAsTheStockTool_data();
    void savesTheSameAsTheStockTool();
    void failsAsTheStockToolDoes_data();
    void failsAsTheStockToolDoes();
    void asksForNoRangeWhenTheSourceCannotSeek();
    void followsALiveStreamToItsEnd_data();
    void followsALiveStreamToItsEnd();
    void aLiveStreamThatIsCancelledLeavesNothingAndOthersAlone();
    void aWaitForAServerCanBeCancelled();
    void readsNoLocalFileForAPlaylistOfTheNetwork();

private:
    [[nodiscard]] QString path(const QString &name) const { return m_folder.filePath(name); }
    /// A command as it is typed in the tables, made whole: addresses and the output.
    [[nodiscard]] QStringList complete(const QString &command, const QString &output) const;

    QTemporaryDir m_folder;
    std::unique_ptr<TestSite> m_site;
};

namespace {

// A blank cannot stand in a word of the tables.
QString withBlanks(QString word)
{
    return word.replace(u'_', u' ').replace(u"CRLF"_s, u"\r\n"_s);
}

}

void TestRunnerNetwork::initTestCase()
{
    QVERIFY(m_folder.isValid());
    m_site = std::make_unique<TestSite>();
}

void TestRunnerNetwork::init()
{
    m_site->reset();
}

QStringList TestRunnerNetwork::complete(const QString &command, const QString &output) const
{
    QStringList words = wordsOf(command);
    for (qsizetype i = 1; i < words.size(); ++i) {
        if (words[i - 1] == u"-i") {
            words[i] = m_site->url(words[i]).toString(QUrl::FullyEncoded);
        } else if (words[i - 1] == u"-headers" || words[i - 1] == u"-cookies") {
            words[i] = withBlanks(words[i]);
        }
    }
    return wordsOf("-y -loglevel verbose") + words + QStringList{u"file:"_s + output};
}

void TestRunnerNetwork::savesTheSameAsTheStockTool_data()
{
    QTest::addColumn<QString>("command");
    row("a file", "-i /media/h264-aac.mp4 -c copy -f mp4");
    row("its index at the end", "-i /media/h264-aac-index-last.mp4 -c copy -f mp4");
    row("a file without ranges", "-i /media/h264-aac.mp4?ranges=0 -c copy -f mp4");
    row("a moved file", "-i /redirect/clip.mp4 -c copy -f mp4");
    row("webm", "-i /media/vp9-opus.webm -c copy -f webm -fflags +bitexact");
    row("playlist to mp4", "-i /media/hls/muxed/index.m3u8 -c copy -f mp4 -bsf:a aac_adtstoasc");
    row("playlist to mpegts", "-i /media/hls/muxed/index.m3u8 -c copy -f mpegts");
    row("playlist to flv", "-i /media/hls/muxed/index.m3u8 -c copy -f flv");
    row("playlist of playlists, its best", "-i /media/hls/ts/master.m3u8 -c copy -f mp4");
    row("streams of two playlists",
        "-i /media/hls/ts/video.m3u8 -i /media/hls/ts/audio.m3u8 -c copy -map 0:0 -map 1:0 -f mp4");
    row("one stream of a playlist", "-i /media/hls/ts/master.m3u8 -c copy -map 0:a:0 -f mpegts");
    row("fragments of mp4", "-i /media/hls/fmp4/video.m3u8 -c copy -f mp4");
    row("fragments of sound", "-i /media/hls/fmp4/audio.m3u8 -c copy -f ipod");
    row("encrypted", "-i /media/hls/aes/index.m3u8 -c copy -f mp4");
    row("a section", "-ss 0.5 -t 1 -i /media/hls/muxed/index.m3u8 -c copy -f mp4");
    row("a section of a file", "-ss 0.5 -t 1 -i /media/h264-aac.mp4 -c copy -f mp4");
    row("not more than a size", "-i /media/hls/muxed/index.m3u8 -c copy -fs 20000 -f mpegts");
    row("at the pace of playing", "-t 0.4 -re -i /media/hls/muxed/index.m3u8 -c copy -f mpegts");
    row("from a segment on", "-live_start_index 0 -i /media/hls/muxed/index.m3u8 -c copy -f mp4");
    row("one connection a segment",
        "-http_seekable 0 -http_persistent 0 -i /media/hls/muxed/index.m3u8 -c copy -f mp4");
    row("without the radio's tags", "-icy 0 -i /media/plain.mp3 -c copy -f mp3");
    row("allowed protocols",
        "-protocol_whitelist file,http,https,tls,tcp,crypto,data -i /media/hls/aes/index.m3u8 -c "
        "copy -f mp4");
    row("a cookie", "-cookies session=ok;_path=/;CRLF -i "
                    "/media/h264-aac.mp4?cookie=session -c copy -f mp4");
    row("headers", "-headers User-Agent:_SomebodyCRLFCookie:_session=okCRLF -i "
                   "/media/h264-aac.mp4?cookie=session -c copy -f mp4");
    row("subtitles in segments", "-i /media/hls/ts/en.m3u8 -c copy -f webvtt");
}

void TestRunnerNetwork::savesTheSameAsTheStockTool()
{
    QFETCH(const QString, command);
    const QString theirs = path(u"theirs.part"_s);
    const QString ours = path(u"ours.part"_s);
    const ToolAnswer expected = runTool(u"ffmpeg"_s, complete(command, theirs));
    QVERIFY2(expected.code == 0, expected.log.constData());
    const ToolAnswer answer = runInProcess(complete(command, ours));
    QVERIFY2(answer.code == 0, answer.log.constData());
    QVERIFY(!contentOf(theirs).isEmpty());
    QVERIFY2(contentOf(ours) == contentOf(theirs), answer.log.constData());
}

void TestRunnerNetwork::failsAsTheStockToolDoes_data()
{
    QTest::addColumn<QString>("command");
    row("not there", "-i /status/404 -c copy -f mp4");
    row("refused", "-i /status/403 -c copy -f mp4");
    row("the server fails", "-i /status/500/clip.mp4 -c copy -f mp4");
    row("without its cookie", "-i /media/h264-aac.mp4?cookie=session -c copy -f mp4");
    row("another cookie's site", "-cookies session=ok;_path=/;_domain=example.com;CRLF -i "
                                 "/media/h264-aac.mp4?cookie=session -c copy -f mp4");
    row("a page", "-i /plain -c copy -f mp4");
    row("nothing in it", "-i /media/bad/empty.mp4 -c copy -f mp4");
    row("protocol that is not allowed",
        "-protocol_whitelist https,tls -i /media/h264-aac.mp4 -c copy -f mp4");
    row("playlist whose key is not allowed",
        "-protocol_whitelist http,tcp -i /media/hls/aes/index.m3u8 -c copy -f mp4");
}

void TestRunnerNetwork::failsAsTheStockToolDoes()
{
    QFETCH(const QString, command);
    const QString output = path(u"failed.part"_s);
    const ToolAnswer expected = runTool(u"ffmpeg"_s, complete(command, output));
    QFile::remove(output);
    QVERIFY(expected.code > 0);
    const ToolAnswer answer = runInProcess(complete(command, output));
    QCOMPARE(answer.code, expected.code);
    QCOMPARE(lastLineOf(answer.log), lastLineOf(expected.log));
    QVERIFY(!QFile::exists(output));
}

void TestRunnerNetwork::asksForNoRangeWhenTheSourceCannotSeek()
{
    const QString output = path(u"whole.part"_s);
    const auto ranges = [this] {
        qsizetype count = 0;
        for (const TestSite::Request &request : m_site->log()) {
            count += request.range.isEmpty() || request.range == u"bytes=0-" ? 0 : 1;
        }
        return count;
    };
    QCOMPARE(
        runInProcess(complete(u"-i /media/h264-aac-index-last.mp4 -c copy -f mp4"_s, output)).code,
        0);
    QVERIFY(ranges() > 0); // to the index, and back
    m_site->reset();
    const ToolAnswer answer =
        runInProcess(complete(u"-seekable 0 -i /media/h264-aac.mp4 -c copy -f mp4"_s, output));
    QVERIFY2(answer.code == 0, answer.log.constData());
    QCOMPARE(ranges(), 0);
    QCOMPARE(m_site->requestCount(u"/media/h264-aac.mp4"_s), 1);
}

void TestRunnerNetwork::followsALiveStreamToItsEnd_data()
{
    QTest::addColumn<QString>("input");
    QTest::addColumn<double>("least");
    QTest::addColumn<double>("most");
    row("from its beginning", "-i /live/index.m3u8?after=3&key=whole", 1.3, 1.7);
    row("a part of it", "-t 0.7 -i /live/index.m3u8?after=60&key=part", 0.5, 0.9);
}

void TestRunnerNetwork::followsALiveStreamToItsEnd()
{
    QFETCH(const QString, input);
    QFETCH(const double, least);
    QFETCH(const double, most);
    const QString output = path(u"live.part"_s);
    const ToolAnswer answer =
        runInProcess(complete(u"-live_start_index 0 "_s + input + u" -c copy -f mpegts"_s, output));
    QVERIFY2(answer.code == 0, answer.log.constData());
    const QStringList packets = packetsOf(output, u"v:0"_s);
    QVERIFY(packets.size() > 5);
    const auto timeOf = [](const QString &packet) { return packet.section(u',', 0, 0).toDouble(); };
    const double length = timeOf(packets.constLast()) - timeOf(packets.constFirst());
    QVERIFY2(length > least && length < most, qPrintable(QString::number(length)));
}

void TestRunnerNetwork::aLiveStreamThatIsCancelledLeavesNothingAndOthersAlone()
{
    QVERIFY(makeMedia(u"-f lavfi -i testsrc2=d=4:s=320x180:r=25 own.mp4"_s, m_folder.path()));
    const QString output = path(u"endless.part"_s);
    BackgroundRun doomed(
        complete(u"-i /live/index.m3u8?after=100000&key=endless -c copy -f mpegts"_s, output));
    QVERIFY2(doomed.hasBegun(), doomed.log().c_str());
    BackgroundRun other({u"-i"_s, path(u"own.mp4"_s), path(u"whole.mkv"_s)});
    QVERIFY2(other.hasBegun(), other.log().c_str());
    QCOMPARE(doomed.cancel(), 255);
    QVERIFY(!QFile::exists(output));
    QCOMPARE(other.finish(), 0);
    QVERIFY(other.positionSeconds() > 3.8);
    QVERIFY(other.log().find("/live/") == std::string::npos);
    QVERIFY(other.log().find("Cancelled") == std::string::npos);
    QVERIFY(doomed.log().find("whole.mkv") == std::string::npos);
}

void TestRunnerNetwork::aWaitForAServerCanBeCancelled()
{
    const QString output = path(u"waited.part"_s);
    BackgroundRun run(complete(u"-i /never -c copy -f mp4"_s, output));
    const bool asked =
        QTest::qWaitFor([this] { return m_site->requestCount(u"/never"_s) > 0; }, 60'000);
    QCOMPARE(run.cancel(), 255);
    QVERIFY(asked);
    QVERIFY(!QFile::exists(output));
}

void TestRunnerNetwork::readsNoLocalFileForAPlaylistOfTheNetwork()
{
    for (const QString &list : {u"/local/index.m3u8"_s, u"/local/live.m3u8"_s}) {
        const QString output = path(u"stolen.part"_s);
        const ToolAnswer answer =
            runInProcess(complete(u"-i "_s + list + u" -t 1 -c copy -f mpegts"_s, output));
        QVERIFY2(answer.code > 0, qPrintable(list));
        QVERIFY(!QFile::exists(output));
    }
}

QTEST_GUILESS_MAIN(TestRunnerNetwork)
#include "tst_runner_network.moc"
