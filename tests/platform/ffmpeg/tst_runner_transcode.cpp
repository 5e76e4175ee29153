// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/platform/ffmpeg/runner_support.h"

#include <QDir>
#include <QFile>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTest>

#include <algorithm>
#include <cmath>
#include <thread>
#include <unistd.h>

using namespace Qt::StringLiterals;
using namespace veltro::ffmpeg;

// The fixed command that makes a saved file playable, on what pages serve.
class TestRunnerTranscode : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void givesH264AndLeavesTheSoundAsItWas();
    void keepsTheTimeOfEveryFrame();
    void losesNoFrameToAGap();
    void keepsSubtitlesThatTheOutputCanCarry();
    void fitsUnusualPictures_data();
    void fitsUnusualPictures();
    void keepsTheColoursOfHighDynamicRange();
    void looksLikeItsSource_data();
    void looksLikeItsSource();
    void turnsAQuarter();
    void showsTurnedPicturesUpright();
    void followsASizeThatChangesInTheStream();
    void keepsTagsAndChapters();
    void refusesWhatHasNoMovingPicture_data();
    void refusesWhatHasNoMovingPicture();
    void refusesToReplaceADamagedFile_data();
    void refusesToReplaceADamagedFile();
    void refusesSoundThatTheOutputCannotCarry();
    void worksAtALowerPriority();

private:
    void makePictures();
    void makeBrokenFiles();
    [[nodiscard]] QString path(const QString &name) const { return m_folder.filePath(name); }
    [[nodiscard]] QStringList command(const QString &name) const;
    [[nodiscard]] QString output() const { return path(u"out.mp4"_s); }
    /// Runs the command. @returns its log, or nothing when it has failed.
    [[nodiscard]] bool transcodes(const QString &name) const;

    QTemporaryDir m_folder;
};

namespace {

QStringList pictures(const QString &description)
{
    return {u"-f"_s, u"lavfi"_s, u"-i"_s, description};
}

const QStringList asVp9{u"-c:v"_s,     u"libvpx-vp9"_s, u"-deadline"_s,
                        u"realtime"_s, u"-cpu-used"_s,  u"8"_s};

QList<double> timesOf(const QString &path)
{
    QList<double> times;
    for (const QString &packet : packetsOf(path, u"v:0"_s)) {
        times.append(packet.section(u',', 0, 0).toDouble());
    }
    std::sort(times.begin(), times.end());
    return times;
}

// The mean colour of the first picture, as a player shows it.
QByteArray colourOf(const QString &path)
{
    return runTool(u"ffmpeg"_s, {u"-v"_s, u"error"_s, u"-i"_s, path, u"-vf"_s,
                                 u"scale=in_range=auto,format=rgb24,scale=1:1:flags=area"_s,
                                 u"-frames:v"_s, u"1"_s, u"-f"_s, u"rawvideo"_s, u"-"_s})
        .output;
}

// How much lighter the top of the first picture is than its bottom.
double topOverBottom(const QString &path)
{
    const auto brightness = [&path](const QString &crop) {
        const ToolAnswer answer =
            runTool(u"ffmpeg"_s, {u"-v"_s, u"error"_s, u"-i"_s, path, u"-vf"_s,
                                  crop + u",scale=1:1"_s, u"-frames:v"_s, u"1"_s, u"-pix_fmt"_s,
                                  u"gray"_s, u"-f"_s, u"rawvideo"_s, u"-"_s});
        return answer.output.isEmpty() ? 0. : static_cast<uchar>(answer.output.front());
    };
    return brightness(u"crop=iw:ih/2:0:0"_s) - brightness(u"crop=iw:ih/2:0:ih/2"_s);
}

}

void TestRunnerTranscode::initTestCase()
{
    QVERIFY(m_folder.isValid());
    QVERIFY(writeFile(path(u"s.srt"_s), "1\n00:00:00,200 --> 00:00:00,600\nHello\n"));
    const QStringList sound = pictures(u"sine=d=1.2"_s);
    const QStringList clip = pictures(u"testsrc2=d=1.2:s=160x90:r=25"_s);
    QVERIFY(
        makeMedia(clip + sound + asVp9 + QStringList{u"-c:a"_s, u"libopus"_s, path(u"av.webm"_s)}));
    QVERIFY(makeMedia({u"-i"_s, path(u"av.webm"_s), u"-i"_s, path(u"s.srt"_s), u"-map"_s, u"0"_s,
                       u"-map"_s, u"1"_s, u"-map"_s, u"1"_s, u"-c"_s, u"copy"_s,
                       u"-metadata:s:s:0"_s, u"language=eng"_s, u"-metadata:s:s:1"_s,
                       u"language=deu"_s, path(u"texts.mkv"_s)}));
    QVERIFY(makeMedia(sound + QStringList{path(u"a.m4a"_s), path(u"a.mp3"_s)}));
    QVERIFY(makeMedia(clip + QStringList{u"-frames:v"_s, u"1"_s, path(u"cover.jpg"_s)}));
    QVERIFY(makeMedia({u"-i"_s, path(u"a.mp3"_s), u"-i"_s, path(u"cover.jpg"_s), u"-map"_s, u"0"_s,
                       u"-map"_s, u"1"_s, u"-c"_s, u"copy"_s, path(u"cover.mp3"_s)}));
    QVERIFY(makeMedia({u"-i"_s, path(u"av.webm"_s), u"-c:v"_s, u"copy"_s, u"-c:a"_s, u"pcm_s16le"_s,
                       path(u"pcm.mkv"_s)}));
    makePictures();
    makeBrokenFiles();
}

void TestRunnerTranscode::makePictures()
{
    const auto make = [this](const QString &description, const QStringList &how,
                             const QString &name) {
        return makeMedia(pictures(description) + how + QStringList{path(name)});
    };
    QVERIFY(make(u"testsrc2=d=0.4:s=161x91,format=yuv444p"_s, asVp9, u"odd444.webm"_s));
    QVERIFY(make(u"testsrc2=d=0.4:s=160x91,format=yuv420p"_s, asVp9, u"oddheight.webm"_s));
    const QStringList ffv1{u"-c:v"_s, u"ffv1"_s};
    QVERIFY(make(u"testsrc2=d=0.4:s=160x90,format=gbrp"_s, ffv1, u"rgb.mkv"_s));
    QVERIFY(make(u"testsrc2=d=0.4:s=160x90,format=yuv422p10le"_s, ffv1, u"ten.mkv"_s));
    QVERIFY(make(u"testsrc2=d=0.4:s=160x90,format=gray"_s, ffv1, u"grey.mkv"_s));
    QVERIFY(make(u"testsrc2=d=0.4:s=160x90,format=yuv420p10le"_s,
                 ffv1 + QStringList{u"-color_primaries"_s, u"bt2020"_s, u"-color_trc"_s,
                                    u"smpte2084"_s, u"-colorspace"_s, u"bt2020nc"_s},
                 u"hdr.mkv"_s));
    const QStringList range{u"-color_range"_s, u"pc"_s};
    QVERIFY(make(u"color=0x201008:d=0.4:s=160x90,scale=out_range=full,format=yuv420p"_s,
                 range + asVp9, u"full.webm"_s));
    QVERIFY(make(u"color=0x201008:d=0.4:s=160x90,scale=out_range=full,format=yuv444p10le"_s,
                 range + asVp9, u"full10.webm"_s));
    QVERIFY(make(u"color=0x201008:d=0.4:s=160x90,scale=out_range=full,format=yuvj420p"_s,
                 {u"-c:v"_s, u"mjpeg"_s, u"-q:v"_s, u"2"_s}, u"fullj.mkv"_s));
    QVERIFY(make(u"color=0x201008:d=0.4:s=160x90,format=gbrp"_s, ffv1, u"darkrgb.mkv"_s));
    QVERIFY(make(u"color=0x201008:d=0.4:s=160x90,format=yuv420p"_s, asVp9, u"dark.webm"_s));
    // Neither of these says when its pictures, which come in another order, are shown.
    QVERIFY(make(u"testsrc2=d=0.4:s=160x90:r=25"_s, {u"-c:v"_s, u"mpeg4"_s, u"-bf"_s, u"2"_s},
                 u"untimed.avi"_s));
    QVERIFY(make(u"testsrc2=d=0.4:s=160x90:r=25"_s, {u"-c:v"_s, u"libx264"_s, u"-bf"_s, u"2"_s},
                 u"untimed.h264"_s));
    QVERIFY(make(u"testsrc2=d=0.4:s=160x90:r=50,interlace"_s,
                 {u"-c:v"_s, u"mpeg2video"_s, u"-flags"_s, u"+ildct+ilme"_s}, u"fields.ts"_s));
    // White over black; turned by a quarter the white comes to one side.
    QVERIFY(make(u"color=white:d=0.4:s=160x90,pad=160:180:0:0:black"_s, asVp9, u"halves.mp4"_s));
    for (const QString &angle : {u"90"_s, u"180"_s}) {
        QVERIFY(makeMedia({u"-i"_s, path(u"halves.mp4"_s), u"-c"_s, u"copy"_s, u"-metadata:s:v"_s,
                           u"rotate="_s + angle, path(u"turned"_s + angle + u".mp4"_s)}));
    }
    // Frames come every 40 ms, then one is missing, then there is nothing for an hour.
    QVERIFY(make(u"testsrc2=d=1.2:s=160x90:r=25,select=not(eq(n\\,7)+eq(n\\,8))"_s,
                 QStringList{u"-vsync"_s, u"vfr"_s} + asVp9, u"uneven.webm"_s));
    QVERIFY(make(u"testsrc2=d=1.2:s=160x90:r=25,setpts=PTS+if(gte(N\\,20)\\,3600/TB\\,0)"_s,
                 QStringList{u"-vsync"_s, u"vfr"_s} + asVp9, u"gap.webm"_s));
    QVERIFY(make(u"testsrc2=d=0.4:s=160x90:r=25"_s, asVp9, u"first.webm"_s));
    QVERIFY(make(u"testsrc2=d=0.4:s=120x120:r=25"_s, asVp9, u"second.webm"_s));
    QVERIFY(writeFile(path(u"sizes.ffconcat"_s),
                      "ffconcat version 1.0\nfile first.webm\nfile second.webm\n"));
    QVERIFY(makeMedia({u"-f"_s, u"concat"_s, u"-i"_s, path(u"sizes.ffconcat"_s), u"-c"_s, u"copy"_s,
                       path(u"sizes.webm"_s)}));
}

void TestRunnerTranscode::makeBrokenFiles()
{
    const QByteArray whole = contentOf(path(u"av.webm"_s));
    QVERIFY(writeFile(path(u"half.webm"_s), whole.first(whole.size() / 5)));
    QByteArray noise = whole;
    quint32 state = 1;
    for (qsizetype i = 3000; i < noise.size(); ++i) {
        state = state * 1664525U + 1013904223U;
        noise[i] = static_cast<char>(state >> 24);
    }
    QVERIFY(writeFile(path(u"noise.webm"_s), noise));
    // The clusters stay whole, some pictures in them do not.
    QByteArray flipped = contentOf(path(u"gap.webm"_s));
    for (qsizetype i = 1000; i < flipped.size(); i += 37) {
        flipped[i] = static_cast<char>(~flipped[i]);
    }
    QVERIFY(writeFile(path(u"flipped.webm"_s), flipped));
    QVERIFY(writeFile(path(u"empty.webm"_s), {}));
}

QStringList TestRunnerTranscode::command(const QString &name) const
{
    return wordsOf("-y -hide_banner -i") + QStringList{path(name)} +
           wordsOf("-c:v h264_videotoolbox -b:v 4M -allow_sw 1 -pix_fmt yuv420p -c:a copy "
                   "-movflags +faststart") +
           QStringList{output()};
}

bool TestRunnerTranscode::transcodes(const QString &name) const
{
    const ToolAnswer answer = runInProcess(command(name));
    return QTest::qVerify(answer.code == 0, "the transcode succeeds", answer.log.constData(),
                          __FILE__, __LINE__);
}

void TestRunnerTranscode::givesH264AndLeavesTheSoundAsItWas()
{
    QVERIFY(transcodes(u"av.webm"_s));
    QCOMPARE(streamFacts(output(), u"codec_name,width,height,pix_fmt"_s),
             (QStringList{u"h264,160,90,yuv420p"_s, u"opus"_s}));
    const QString copied = path(u"copied.mp4"_s);
    QVERIFY(makeMedia({u"-i"_s, path(u"av.webm"_s), u"-vn"_s, u"-c"_s, u"copy"_s, copied}));
    const QStringList packets = packetsOf(output(), u"a:0"_s);
    QVERIFY(packets.size() > 50);
    QCOMPARE(packets, packetsOf(copied, u"a:0"_s));
    // The index stands in front, so that playing can begin before the file is whole.
    const QByteArray file = contentOf(output());
    QVERIFY(file.indexOf("moov") > 0 && file.indexOf("moov") < file.indexOf("mdat"));
}

void TestRunnerTranscode::keepsTheTimeOfEveryFrame()
{
    QVERIFY(transcodes(u"uneven.webm"_s));
    const QList<double> expected = timesOf(path(u"uneven.webm"_s));
    const QList<double> times = timesOf(output());
    QCOMPARE(expected.size(), 28);
    QCOMPARE(times.size(), expected.size());
    for (qsizetype i = 0; i < times.size(); ++i) {
        QVERIFY2(std::abs(times[i] - expected[i]) < 0.001, qPrintable(QString::number(i)));
    }
}

void TestRunnerTranscode::losesNoFrameToAGap()
{
    QVERIFY(transcodes(u"gap.webm"_s));
    const QList<double> times = timesOf(output());
    QCOMPARE(times.size(), 30); // and none is made up to fill the hour
    QVERIFY(times[20] - times[19] > 3600);
}

void TestRunnerTranscode::keepsSubtitlesThatTheOutputCanCarry()
{
    QVERIFY(transcodes(u"texts.mkv"_s));
    QCOMPARE(streamFacts(output(), u"codec_name:stream_tags=language"_s),
             (QStringList{u"h264,und"_s, u"opus,und"_s, u"mov_text,eng"_s, u"mov_text,deu"_s}));
    const QString text = path(u"back.srt"_s);
    QVERIFY(makeMedia({u"-i"_s, output(), u"-map"_s, u"0:s:1"_s, text}));
    // The sound begins a little before zero, so everything is shown that much later.
    const QRegularExpression kept(u"00:00:00,2.. --> 00:00:00,6..\\nHello"_s);
    QVERIFY2(kept.match(QString::fromUtf8(contentOf(text))).hasMatch(), contentOf(text));
    // A file that has been made playable keeps them when it is made playable again.
    const QString again = path(u"again.mp4"_s);
    QFile::remove(again);
    QVERIFY(QFile::rename(output(), again));
    QVERIFY(transcodes(u"again.mp4"_s));
    QCOMPARE(streamFacts(output(), u"codec_name"_s),
             (QStringList{u"h264"_s, u"opus"_s, u"mov_text"_s, u"mov_text"_s}));
}

void TestRunnerTranscode::fitsUnusualPictures_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("expected");
    QTest::newRow("odd and 4:4:4") << u"odd444.webm"_s << u"h264,160,90,yuv420p"_s;
    QTest::newRow("odd height") << u"oddheight.webm"_s << u"h264,160,90,yuv420p"_s;
    QTest::newRow("RGB") << u"rgb.mkv"_s << u"h264,160,90,yuv420p"_s;
    QTest::newRow("10 bits") << u"ten.mkv"_s << u"h264,160,90,yuv420p"_s;
    QTest::newRow("10 bits, 4:4:4, full range") << u"full10.webm"_s << u"h264,160,90,yuv420p"_s;
    QTest::newRow("no times of showing") << u"untimed.avi"_s << u"h264,160,90,yuv420p"_s;
    QTest::newRow("no times at all") << u"untimed.h264"_s << u"h264,160,90,yuv420p"_s;
    QTest::newRow("fields") << u"fields.ts"_s << u"h264,160,90,yuv420p"_s;
    QTest::newRow("grey") << u"grey.mkv"_s << u"h264,160,90,yuv420p"_s;
}

void TestRunnerTranscode::fitsUnusualPictures()
{
    QFETCH(const QString, name);
    QFETCH(const QString, expected);
    QVERIFY(transcodes(name));
    QCOMPARE(streamFacts(output(), u"codec_name,width,height,pix_fmt"_s), QStringList{expected});
    QCOMPARE(timesOf(output()).size(), 10);
}

void TestRunnerTranscode::keepsTheColoursOfHighDynamicRange()
{
    QVERIFY(transcodes(u"hdr.mkv"_s));
    QCOMPARE(streamFacts(output(), u"pix_fmt,color_space,color_transfer,color_primaries"_s),
             QStringList{u"yuv420p,bt2020nc,smpte2084,bt2020"_s});
}

void TestRunnerTranscode::looksLikeItsSource_data()
{
    QTest::addColumn<QString>("name");
    QTest::newRow("full range") << u"full.webm"_s;
    QTest::newRow("full range by the format's name") << u"fullj.mkv"_s;
    QTest::newRow("full range, 10 bits") << u"full10.webm"_s;
    QTest::newRow("RGB") << u"darkrgb.mkv"_s;
    QTest::newRow("usual range") << u"dark.webm"_s;
}

void TestRunnerTranscode::looksLikeItsSource()
{
    QFETCH(const QString, name);
    QVERIFY(transcodes(name));
    const QByteArray expected = colourOf(path(name));
    const QByteArray colour = colourOf(output());
    QCOMPARE(expected.size(), 3);
    QCOMPARE(colour.size(), 3);
    // The pictures are dark: a range that is mistaken for the other shifts them by more than ten.
    for (qsizetype i = 0; i < 3; ++i) {
        const int distance = static_cast<uchar>(colour[i]) - static_cast<uchar>(expected[i]);
        QVERIFY2(std::abs(distance) <= 3, qPrintable(QString::number(distance)));
    }
}

void TestRunnerTranscode::turnsAQuarter()
{
    QVERIFY(transcodes(u"turned90.mp4"_s));
    QCOMPARE(streamFacts(output(), u"width,height"_s), QStringList{u"180,160"_s});
    QVERIFY(std::abs(topOverBottom(output())) < 20); // the white is at a side now
}

void TestRunnerTranscode::showsTurnedPicturesUpright()
{
    QVERIFY(topOverBottom(path(u"halves.mp4"_s)) > 100);
    QVERIFY(transcodes(u"turned180.mp4"_s));
    QVERIFY(topOverBottom(output()) < -100);
    // The picture itself is turned, and nobody is asked to do it again.
    const ToolAnswer stored =
        runTool(u"ffmpeg"_s, {u"-v"_s, u"error"_s, u"-y"_s, u"-noautorotate"_s, u"-i"_s, output(),
                              u"-c:v"_s, u"ffv1"_s, path(u"stored.mkv"_s)});
    QCOMPARE(stored.code, 0);
    QVERIFY(topOverBottom(path(u"stored.mkv"_s)) < -100);
}

void TestRunnerTranscode::followsASizeThatChangesInTheStream()
{
    QVERIFY(transcodes(u"sizes.webm"_s));
    QCOMPARE(streamFacts(output(), u"width,height"_s), QStringList{u"160,90"_s});
    QCOMPARE(timesOf(output()).size(), 20);
}

void TestRunnerTranscode::keepsTagsAndChapters()
{
    QVERIFY(writeFile(path(u"tags.meta"_s),
                      ";FFMETADATA1\ntitle=A title\n[CHAPTER]\nTIMEBASE=1/1000\nSTART=0\n"
                      "END=500\ntitle=one\n"));
    QVERIFY(makeMedia({u"-i"_s, path(u"av.webm"_s), u"-i"_s, path(u"tags.meta"_s),
                       u"-map_metadata"_s, u"1"_s, u"-c"_s, u"copy"_s, path(u"tags.webm"_s)}));
    QVERIFY(transcodes(u"tags.webm"_s));
    const ToolAnswer facts =
        runTool(u"ffprobe"_s, {u"-v"_s, u"error"_s, u"-show_chapters"_s, u"-show_entries"_s,
                               u"format_tags=title:chapter=end_time:chapter_tags=title"_s, u"-of"_s,
                               u"csv=p=0"_s, output()});
    QCOMPARE(facts.output.trimmed().split('\n'), (QByteArrayList{"0.500000,one", "A title"}));
}

void TestRunnerTranscode::refusesWhatHasNoMovingPicture_data()
{
    QTest::addColumn<QString>("name");
    QTest::newRow("sound") << u"a.m4a"_s;
    QTest::newRow("sound with a cover") << u"cover.mp3"_s;
    QTest::newRow("text") << u"s.srt"_s;
}

void TestRunnerTranscode::refusesWhatHasNoMovingPicture()
{
    QFETCH(const QString, name);
    QFile::remove(output());
    const ToolAnswer answer = runInProcess(command(name));
    QCOMPARE(answer.code, 1);
    QCOMPARE(lastLineOf(answer.log), "There is no video to convert in " + path(name).toUtf8());
    QVERIFY(!QFile::exists(output()));
}

void TestRunnerTranscode::refusesToReplaceADamagedFile_data()
{
    QTest::addColumn<QString>("name");
    QTest::newRow("nothing in it") << u"empty.webm"_s;
    QTest::newRow("cut off") << u"half.webm"_s;
    QTest::newRow("noise after the header") << u"noise.webm"_s;
    QTest::newRow("some pictures damaged") << u"flipped.webm"_s;
}

void TestRunnerTranscode::refusesToReplaceADamagedFile()
{
    QFETCH(const QString, name);
    QFile::remove(output());
    const ToolAnswer answer = runInProcess(command(name));
    QVERIFY2(answer.code != 0, answer.log.constData());
    QVERIFY(!QFile::exists(output()));
}

void TestRunnerTranscode::refusesSoundThatTheOutputCannotCarry()
{
    QFile::remove(output());
    const ToolAnswer answer = runInProcess(command(u"pcm.mkv"_s));
    QCOMPARE(answer.code, 1);
    QCOMPARE(lastLineOf(answer.log), "Could not write header for output file #0 (incorrect codec "
                                     "parameters ?): Invalid argument");
    QVERIFY(!QFile::exists(output()));
}

void TestRunnerTranscode::worksAtALowerPriority()
{
    QVERIFY(makeMedia(pictures(u"testsrc2=d=20:s=640x360:r=25"_s) + asVp9 +
                      QStringList{path(u"long.webm"_s)}));
    const auto session = mediaTools().makeSession();
    int code = -1;
    std::thread runner([&] { code = session->run(argumentsOf(command(u"long.webm"_s))); });
    const auto niceness = [](const QString &thread) {
        const QByteArray stat = contentOf(u"/proc/self/task/"_s + thread + u"/stat"_s);
        // The fields are counted from after the name, which may hold anything.
        return stat.mid(stat.lastIndexOf(')') + 2).split(' ').value(16).toInt();
    };
    const int own = niceness(QString::number(getpid()));
    const auto isNice = [&niceness, least = std::min(own + 5, 19)](const QString &thread) {
        return niceness(thread) >= least;
    };
    const auto niceThreads = [&isNice] {
        const QStringList threads =
            QDir(u"/proc/self/task"_s).entryList(QDir::Dirs | QDir::NoDotAndDotDot);
        return std::count_if(threads.begin(), threads.end(), isNice);
    };
    // The runner's own threads, and at least one of the encoder's.
    const bool wereNice = QTest::qWaitFor([&] { return niceThreads() >= 4; }, 30'000);
    session->cancel();
    runner.join();
    QVERIFY(wereNice);
    QCOMPARE(code, 255);
    QCOMPARE(niceness(QString::number(getpid())), own);
    QVERIFY(!QFile::exists(output()));
}

QTEST_GUILESS_MAIN(TestRunnerTranscode)
#include "tst_runner_transcode.moc"
