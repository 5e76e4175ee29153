// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/platform/ffmpeg/runner_support.h"

#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryDir>
#include <QTest>

#include <algorithm>

using namespace Qt::StringLiterals;
using namespace veltro::ffmpeg;

namespace {

CommandResult probe(const QStringList &arguments)
{
    return mediaTools().probe(argumentsOf(arguments));
}

QByteArray bytes(const std::string &text)
{
    return QByteArray::fromStdString(text);
}

const QStringList asJson = wordsOf("-hide_banner -show_format -show_streams -print_format json");

}

class TestProbe : public QObject {
    Q_OBJECT

    [[nodiscard]] QString path(const QString &name) const { return m_folder.filePath(name); }
    [[nodiscard]] QString argument(const QString &name) const { return u"file:"_s + path(name); }
    void makeBrokenFiles();

    QTemporaryDir m_folder;

private Q_SLOTS:
    void initTestCase();
    void answersAsTheToolDoes_data();
    void answersAsTheToolDoes();
    void refusesAsTheToolDoes_data();
    void refusesAsTheToolDoes();
    void readsItsOptionsAsTheToolDoes_data();
    void readsItsOptionsAsTheToolDoes();
    void tellsVersionsInTheFormThatCallersTakeApart();
    void keepsJsonValidWhateverIsInTheTags();
    void namesTheStreamsOfAFile_data();
    void namesTheStreamsOfAFile();
    void namesNoStreamsOfWhatIsNotMedia();
    void writesNumbersWithAPointUnderACommaLocale();
    void doesNotGrowWithTheNumberOfProbes();
};

void TestProbe::initTestCase()
{
    QVERIFY(m_folder.isValid());
    QVERIFY(writeFile(path(u"text.srt"_s), "1\n00:00:00,000 --> 00:00:00,300\nhello\n"));
    QVERIFY(writeFile(path(u"text.vtt"_s), "WEBVTT\n\n00:00.000 --> 00:00.300\nhello\n"));
    for (
        const QString &command : {
            u"-f lavfi -i testsrc2=d=0.4:s=160x90,format=yuv420p -f lavfi -i sine=d=0.4"
            " -c:v libx264 -c:a aac -metadata \"title=a \"\"\"title\"\"\" \\ with\nlines\""
            " clip.mp4"_s,
            u"-i clip.mp4 -c:v libvpx-vp9 -c:a libopus clip.webm"_s,
            u"-i clip.mp4 clip.ts clip.flv -c:v libtheora clip.ogg"_s,
            u"-i clip.mp4 -vn sound.mp3 -vn sound.flac -vn sound.wav -vn sound.aac -vn sound.m4a"_s,
            u"-i clip.mp4 -frames:v 1 picture.png -frames:v 1 picture.jpg"_s,
            u"-i clip.mp4 -i text.srt -map 0 -map 1 -c copy -c:s mov_text"
            " -metadata:s:s:0 language=eng -metadata:s:v rotate=90 turned.mp4"_s,
            u"-i clip.mp4 -i text.srt -map 0 -map 1 -c copy -attach text.vtt"
            " -metadata:s:t mimetype=text/vtt attached.mkv"_s,
            u"-i sound.mp3 -i picture.jpg -map 0 -map 1 -c copy cover.mp3"_s,
        }) {
        QVERIFY(makeMedia(command, m_folder.path()));
    }
    makeBrokenFiles();
}

void TestProbe::makeBrokenFiles()
{
    const QByteArray whole = contentOf(path(u"clip.mp4"_s));
    QVERIFY(writeFile(path(u"cut.mp4"_s), whole.first(whole.size() / 2)));
    QVERIFY(writeFile(path(u"empty.mp4"_s), {}));
    QByteArray noise;
    quint32 state = 1;
    for (int i = 0; i < 6000; ++i) {
        state = state * 1664525 + 1013904223;
        noise.append(static_cast<char>(state >> 24));
    }
    QVERIFY(writeFile(path(u"noise.mp4"_s), noise));
    QVERIFY(QDir(m_folder.path()).mkdir(u"folder.mp4"_s));
}

void TestProbe::answersAsTheToolDoes_data()
{
    QTest::addColumn<QString>("file");
    for (const char *name :
         {"clip.mp4", "clip.webm", "clip.ts", "clip.flv", "clip.ogg", "sound.mp3", "sound.flac",
          "sound.wav", "sound.aac", "sound.m4a", "picture.png", "turned.mp4", "attached.mkv",
          "cover.mp3", "text.srt", "text.vtt"}) {
        QTest::newRow(name) << QString::fromLatin1(name);
    }
}

void TestProbe::answersAsTheToolDoes()
{
    QFETCH(QString, file);
    for (const QStringList &options : {asJson, wordsOf("-hide_banner -show_streams"),
                                       wordsOf("-v quiet -show_format -of default -i")}) {
        const ToolAnswer expected = runTool(u"ffprobe"_s, options + QStringList{argument(file)});
        QCOMPARE(expected.code, 0);
        const CommandResult answer = probe(options + QStringList{argument(file)});
        QCOMPARE(bytes(answer.output), expected.output);
        QCOMPARE(comparable(bytes(answer.log)), comparable(expected.log));
        QCOMPARE(answer.code, 0);
    }
}

void TestProbe::refusesAsTheToolDoes_data()
{
    QTest::addColumn<QString>("file");
    for (const char *name : {"cut.mp4", "empty.mp4", "noise.mp4", "folder.mp4", "missing.mp4"}) {
        QTest::newRow(name) << QString::fromLatin1(name);
    }
}

void TestProbe::refusesAsTheToolDoes()
{
    QFETCH(QString, file);
    for (const QStringList &options : {asJson, wordsOf("-hide_banner -show_streams")}) {
        const ToolAnswer expected = runTool(u"ffprobe"_s, options + QStringList{argument(file)});
        QCOMPARE(expected.code, 1);
        const CommandResult answer = probe(options + QStringList{argument(file)});
        QCOMPARE(answer.code, 1);
        QCOMPARE(bytes(answer.output), expected.output);
        QCOMPARE(lastLineOf(bytes(answer.log)), lastLineOf(expected.log));
    }
}

void TestProbe::readsItsOptionsAsTheToolDoes_data()
{
    QTest::addColumn<QString>("command");
    row("an unknown option", "-nonsense clip.mp4");
    row("an unknown option at the end", "clip.mp4 -nonsense");
    row("a value is missing", "clip.mp4 -of");
    row("an unknown form", "-of nonsense clip.mp4");
    row("an unknown demuxer", "-f nonsense clip.mp4");
    row("two files", "clip.mp4 file:other.mp4");
    row("an unknown protocol", "nonsense:x");
    row("a name behind the options", "-- -missing");
    row("nothing to show", "clip.mp4");
    row("streams of a kind", "-show_streams -select_streams a clip.mp4");
    row("the demuxer is given", "-show_format -f mp3 sound.mp3");
    row("quiet behind the file", "clip.mp4 -loglevel quiet");
}

void TestProbe::readsItsOptionsAsTheToolDoes()
{
    QFETCH(const QString, command);
    QStringList arguments{u"-hide_banner"_s};
    for (const QString &word : wordsOf(command)) {
        arguments += QFile::exists(path(word)) ? argument(word) : word;
    }
    const ToolAnswer expected = runTool(u"ffprobe"_s, arguments);
    const CommandResult answer = probe(arguments);
    QCOMPARE(answer.code, expected.code);
    QCOMPARE(bytes(answer.output), expected.output);
    QCOMPARE(lastLineOf(comparable(bytes(answer.log))), lastLineOf(comparable(expected.log)));
}

void TestProbe::tellsVersionsInTheFormThatCallersTakeApart()
{
    const CommandResult filters = probe({u"-bsfs"_s});
    const ToolAnswer expected = runTool(u"ffprobe"_s, {u"-bsfs"_s});
    QCOMPARE(filters.code, 0);
    QCOMPARE(bytes(filters.output), expected.output);

    // The banner comes by standard error; its first line and libraries are what is looked for.
    const QList<QByteArray> ours = bytes(filters.log).split('\n');
    const QList<QByteArray> theirs = expected.log.split('\n');
    const QByteArray version = theirs.first().left(theirs.first().indexOf(" Copyright"));
    QVERIFY2(ours.first().startsWith(version + " "), ours.first().constData());
    int libraries = 0;
    for (const QByteArray &line : ours.mid(1)) {
        QVERIFY2(theirs.contains(line), line.constData());
        libraries += line.startsWith("  lib") ? 1 : 0;
    }
    QVERIFY(libraries >= 5);

    const CommandResult versions = probe({u"-version"_s});
    QCOMPARE(versions.code, 0);
    QVERIFY(versions.output.starts_with("ffprobe version "));
    QCOMPARE(versions.log, "");
}

void TestProbe::keepsJsonValidWhateverIsInTheTags()
{
    const QByteArray marker = "MARKER-MARKER-MARKER";
    QVERIFY(makeMedia(u"-i clip.mp4 -c copy -metadata title=MARKER-MARKER-MARKER hostile.mkv"_s,
                      m_folder.path()));
    QByteArray content = contentOf(path(u"hostile.mkv"_s));
    // A lone continuation byte, a cut sequence, an overlong slash, a surrogate, controls, quotes.
    const QByteArray hostile("\x80\xc3(\xc0\xaf\xed\xa0\x80\x01\x1f\x7f\"\\\t\r\n{\xf0\x9f");
    QVERIFY(content.contains(marker));
    content.replace(marker, hostile.leftJustified(marker.size(), '.'));
    QVERIFY(writeFile(path(u"hostile.mkv"_s), content));

    const CommandResult answer = probe(asJson + QStringList{argument(u"hostile.mkv"_s)});
    QCOMPARE(answer.code, 0);
    QJsonParseError error{};
    const QJsonDocument document = QJsonDocument::fromJson(bytes(answer.output), &error);
    QCOMPARE(error.error, QJsonParseError::NoError);
    const QString title = document[u"format"_s][u"tags"_s][u"title"_s].toString();
    QVERIFY2(title.contains(u"\u0001\u001f\u007f\"\\\t\r\n{"_s), qPrintable(title));
    const ToolAnswer expected =
        runTool(u"ffprobe"_s, asJson + QStringList{argument(u"hostile.mkv"_s)});
    QCOMPARE(bytes(answer.output), expected.output);
}

void TestProbe::namesTheStreamsOfAFile_data()
{
    using Streams = QList<StreamInformation>;
    QTest::addColumn<QString>("file");
    QTest::addColumn<Streams>("expected");
    const StreamInformation h264{"video", "h264", false};
    const StreamInformation aac{"audio", "aac", false};
    QTest::newRow("mp4") << u"clip.mp4"_s << Streams{h264, aac};
    QTest::newRow("with subtitles")
        << u"turned.mp4"_s << Streams{h264, aac, {"subtitle", "mov_text", false}};
    QTest::newRow("with an attachment")
        << u"attached.mkv"_s
        << Streams{h264, aac, {"subtitle", "subrip", false}, {"attachment", "", false}};
    QTest::newRow("webm") << u"clip.webm"_s
                          << Streams{{"video", "vp9", false}, {"audio", "opus", false}};
    QTest::newRow("no list of streams at the file's head")
        << u"clip.flv"_s << Streams{{"video", "flv1", false}, {"audio", "mp3", false}};
    QTest::newRow("a cover is no video")
        << u"cover.mp3"_s << Streams{{"audio", "mp3", false}, {"video", "mjpeg", true}};
    QTest::newRow("text") << u"text.vtt"_s << Streams{{"subtitle", "webvtt", false}};
}

void TestProbe::namesTheStreamsOfAFile()
{
    QFETCH(QString, file);
    QFETCH(QList<StreamInformation>, expected);
    const auto streams = mediaTools().streams(path(file).toStdString());
    QVERIFY(streams.has_value());
    if (file.endsWith(u".flv"_s)) { // its streams come in the order of their first packets
        QVERIFY(std::is_permutation(streams->begin(), streams->end(), expected.begin(),
                                    expected.end()));
        return;
    }
    QCOMPARE(QList<StreamInformation>(streams->begin(), streams->end()), expected);
}

void TestProbe::namesNoStreamsOfWhatIsNotMedia()
{
    for (const QString &name :
         {u"cut.mp4"_s, u"empty.mp4"_s, u"noise.mp4"_s, u"folder.mp4"_s, u"missing.mp4"_s}) {
        QVERIFY2(!mediaTools().streams(path(name).toStdString()), qPrintable(name));
    }
    // A protocol's name before a colon is a file's name like any other here.
    QVERIFY(QFile::copy(path(u"sound.m4a"_s), path(u"http:x"_s)));
    const QString before = QDir::currentPath();
    QVERIFY(QDir::setCurrent(m_folder.path()));
    const auto streams = mediaTools().streams("http:x");
    QVERIFY(QDir::setCurrent(before));
    QVERIFY(streams.has_value());
    QCOMPARE(streams->size(), 1U);
}

void TestProbe::writesNumbersWithAPointUnderACommaLocale()
{
    const QStringList command = asJson + QStringList{argument(u"clip.mp4"_s)};
    const std::string expected = probe(command).output;
    const CommaLocale comma;
    QVERIFY(CommaLocale::isInForce());
    QCOMPARE(bytes(probe(command).output), bytes(expected));
    QVERIFY(CommaLocale::isInForce()); // the caller's thread has it back
}

void TestProbe::doesNotGrowWithTheNumberOfProbes()
{
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
    QSKIP("a sanitizer keeps freed memory; the address sanitizer counts the leaks itself");
#endif
    const QStringList names{u"attached.mkv"_s, u"turned.mp4"_s, u"clip.ts"_s, u"noise.mp4"_s};
    const auto probeAll = [&](int rounds) {
        for (int round = 0; round < rounds; ++round) {
            for (const QString &name : names) {
                static_cast<void>(probe(asJson + QStringList{argument(name)}));
                static_cast<void>(mediaTools().streams(path(name).toStdString()));
            }
        }
    };
    probeAll(10);
    const qint64 before = residentBytes();
    probeAll(125);
    const qint64 growth = residentBytes() - before;
    QVERIFY(before > 0);
    QVERIFY2(growth < 2'000'000, QByteArray::number(growth).constData());
}

QTEST_GUILESS_MAIN(TestProbe)
#include "tst_probe.moc"
