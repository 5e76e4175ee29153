// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/ffmpeg/command_failed.h"
#include "platform/ffmpeg/command_line.h"
#include "platform/ffmpeg/library_options.h"

#include <QString>
#include <QTest>

#include <string>
#include <vector>

using namespace Qt::StringLiterals;
using namespace veltro::ffmpeg;

namespace {

using Words = std::vector<std::string>;
using Options = std::vector<GivenOption>;

// Words are divided by blanks; none of those used here holds one.
Words wordsOf(const char *text)
{
    Words words;
    for (const QString &word : QString::fromUtf8(text).split(u' ', Qt::SkipEmptyParts)) {
        words.push_back(word.toStdString());
    }
    return words;
}

CommandLine parse(const Words &words)
{
    return parseCommandLine(words, isLibraryOption);
}

QString failureOf(const char *text)
{
    try {
        static_cast<void>(parse(wordsOf(text)));
        return {};
    } catch (const CommandFailed &failure) {
        return QString::fromUtf8(failure.what());
    }
}

}

class TestCommandLine : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void aMergeIsTwoInputsAndTheOptionsOfOneOutput();
    void theSeventeenArgumentsOfThePlaybackTranscodeAreUnderstood();
    void aDownloadKeepsItsHeadersForTheNextInputOnly();
    void otherNamesOfAnOptionAreOne_data();
    void otherNamesOfAnOptionAreOne();
    void whatComesLastCounts();
    void aNameAfterTwoDashesIsNoOption();
    void refusalsSayWhyInTheToolsWords_data();
    void refusalsSayWhyInTheToolsWords();
};

void TestCommandLine::aMergeIsTwoInputsAndTheOptionsOfOneOutput()
{
    const CommandLine command = parse(wordsOf(
        "-y -loglevel repeat+info -i file:v.mp4 -i file:a.m4a -c copy -map 0:v:0 -map 1:a:0 "
        "-bsf:a:0 aac_adtstoasc -movflags +faststart file:out.mp4"));
    QVERIFY(command.isOn("y"));
    QCOMPARE(command.value("loglevel"), std::string_view("repeat+info"));
    QCOMPARE(command.inputs.size(), 2U);
    QCOMPARE(command.inputs[1].url, "file:a.m4a");
    QVERIFY(command.inputs[1].options.empty());
    QCOMPARE(command.outputs.size(), 1U);
    QCOMPARE(command.outputs[0].url, "file:out.mp4");
    QCOMPARE(command.outputs[0].options, (Options{{"c", "", "copy"},
                                                  {"map", "", "0:v:0"},
                                                  {"map", "", "1:a:0"},
                                                  {"bsf", "a:0", "aac_adtstoasc"}}));
    QCOMPARE(command.outputs[0].libraryOptions, (Options{{"movflags", "", "+faststart"}}));
}

void TestCommandLine::theSeventeenArgumentsOfThePlaybackTranscodeAreUnderstood()
{
    const CommandLine command =
        parse(wordsOf("-y -hide_banner -i in.webm -c:v h264_videotoolbox -b:v 4M -allow_sw 1 "
                      "-pix_fmt yuv420p -c:a copy -movflags +faststart in.transcoded.mp4"));
    QCOMPARE(command.outputs.size(), 1U);
    QCOMPARE(
        command.outputs[0].options,
        (Options{{"c", "v", "h264_videotoolbox"}, {"pix_fmt", "", "yuv420p"}, {"c", "a", "copy"}}));
    QCOMPARE(command.outputs[0].libraryOptions,
             (Options{{"b", "v", "4M"}, {"movflags", "", "+faststart"}}));
}

void TestCommandLine::aDownloadKeepsItsHeadersForTheNextInputOnly()
{
    Words words = wordsOf("-y -loglevel verbose");
    const std::string headers = "User-Agent: Some Browser\r\nReferer: http://127.0.0.1/\r\n";
    words.insert(words.end(),
                 {"-headers", headers, "-ss", "10", "-t", "5", "-seekable", "0",
                  "-live_start_index", "0", "-i", "http://127.0.0.1/a.m3u8", "-i",
                  "http://127.0.0.1/b.m3u8", "-c", "copy", "-f", "mpegts", "file:x.part"});
    const CommandLine command = parse(words);
    QCOMPARE(
        command.inputs[0].libraryOptions,
        (Options{{"headers", "", headers}, {"seekable", "", "0"}, {"live_start_index", "", "0"}}));
    QCOMPARE(command.inputs[0].options, (Options{{"ss", "", "10"}, {"t", "", "5"}}));
    QCOMPARE(command.inputs[1].libraryOptions, Options{});
    QCOMPARE(command.outputs[0].value("f"), std::string_view("mpegts"));
}

void TestCommandLine::otherNamesOfAnOptionAreOne_data()
{
    QTest::addColumn<QString>("written");
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("specifier");
    QTest::newRow("audio codec") << u"-acodec"_s << u"c"_s << u"a"_s;
    QTest::newRow("codec of one stream") << u"-codec:s:1"_s << u"c"_s << u"s:1"_s;
    QTest::newRow("video filter") << u"-vf"_s << u"filter"_s << u"v"_s;
    QTest::newRow("audio bitstream filter") << u"-absf"_s << u"bsf"_s << u"a"_s;
    QTest::newRow("audio quality") << u"-aq"_s << u"q"_s << u"a"_s;
    QTest::newRow("quality of a kind") << u"-q:a"_s << u"q"_s << u"a"_s;
    QTest::newRow("frames of video") << u"-vframes"_s << u"frames"_s << u"v"_s;
    QTest::newRow("metadata of a stream") << u"-metadata:s:s:0"_s << u"metadata"_s << u"s:s:0"_s;
}

void TestCommandLine::otherNamesOfAnOptionAreOne()
{
    QFETCH(const QString, written);
    QFETCH(const QString, name);
    QFETCH(const QString, specifier);
    const CommandLine command = parse({"-i", "in", written.toStdString(), "x", "out"});
    QCOMPARE(command.outputs[0].options,
             (Options{{name.toStdString(), specifier.toStdString(), "x"}}));
}

void TestCommandLine::whatComesLastCounts()
{
    const CommandLine command = parse(wordsOf("-n -i in -t 5 -t 7 -vn -novn -f mp4 out -y"));
    QCOMPARE(command.outputs[0].value("t"), std::string_view("7"));
    QVERIFY(!command.outputs[0].isOn("vn"));
    QVERIFY(command.isOn("n"));
    QVERIFY(command.isOn("y"));
}

void TestCommandLine::aNameAfterTwoDashesIsNoOption()
{
    const CommandLine command = parse(wordsOf("-i in -- -out.mp4"));
    QCOMPARE(command.outputs[0].url, "-out.mp4");
}

void TestCommandLine::refusalsSayWhyInTheToolsWords_data()
{
    QTest::addColumn<QByteArray>("command");
    QTest::addColumn<QString>("reason");
    QTest::newRow("unknown option")
        << QByteArray("-i in -nonsense 1 out")
        << u"Unrecognized option 'nonsense'.\nError splitting the argument list: Option not found"_s;
    QTest::newRow("nothing after an option")
        << QByteArray("-i in -c")
        << u"Missing argument for option 'c'.\nError splitting the argument list: Invalid argument"_s;
    QTest::newRow("graphs of several streams")
        << QByteArray("-i in -filter_complex overlay out")
        << u"Option 'filter_complex' is not supported by this program"_s;
    QTest::newRow("a specifier where none belongs")
        << QByteArray("-i in -vcodec:0 copy out")
        << u"Unrecognized option 'vcodec:0'.\nError splitting the argument list: Option not found"_s;
}

void TestCommandLine::refusalsSayWhyInTheToolsWords()
{
    QFETCH(const QByteArray, command);
    QFETCH(const QString, reason);
    QCOMPARE(failureOf(command.constData()), reason);
}

QTEST_APPLESS_MAIN(TestCommandLine)
#include "tst_command_line.moc"
