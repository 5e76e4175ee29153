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
    void refusesWhatItCannotMakePlayable_data();
    void refusesWhatItCannotMakePlayable();
    void worksAtALowerPriority();

private:
    void makePictures();
    void makeBrokenFiles();
    [[nodiscard]] QString path(const QString &name) const { return m_folder.filePath(name); }
    void make(const QString &command) const;
    [[nodiscard]] QString output() const { return path(u"out.mp4"_s); }
    /// Runs the command. @returns its log, or nothing when it has failed.
    [[nodiscard]] bool transcodes(const QString &name) const;

    QTemporaryDir m_folder;
};

namespace {

const QString asVp9 = u"-c:v libvpx-vp9 -deadline realtime -cpu-used 8 "_s;

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
    return runTool(u"ffmpeg"_s, wordsOf("-v error -i") + QStringList{path} +
                                    wordsOf("-vf scale=in_range=auto,format=rgb24,scale=1:1:flags="
                                            "area -frames:v 1 -f rawvideo -"))
        .output;
}

// How much lighter the top of the first picture is than its bottom.
double topOverBottom(const QString &path)
{
    const auto brightness = [&path](const QString &crop) {
        const ToolAnswer answer =
            runTool(u"ffmpeg"_s, wordsOf("-v error -i") + QStringList{path, u"-vf"_s, crop} +
                                     wordsOf("-frames:v 1 -pix_fmt gray -f rawvideo -"));
        return answer.output.isEmpty() ? 0. : static_cast<uchar>(answer.output.front());
    };
    return brightness(u"crop=iw:ih/2:0:0,scale=1:1"_s) -
           brightness(u"crop=iw:ih/2:0:ih/2,scale=1:1"_s);
}

}

void TestRunnerTranscode::make(const QString &command) const
{
    QVERIFY(makeMedia(command, m_folder.path()));
}

void TestRunnerTranscode::initTestCase()
{
    QVERIFY(m_folder.isValid());
    QVERIFY(writeFile(path(u"s.srt"_s), "1\n00:00:00,200 --> 00:00:00,600\nHello\n"));
    const QString clip = u"-f lavfi -i testsrc2=d=1.2:s=160x90:r=25 "_s;
    const QString sound = u"-f lavfi -i sine=d=1.2 "_s;
    make(clip + sound + asVp9 + u"-c:a libopus av.webm"_s);
    make(u"-i av.webm -i s.srt -map 0 -map 1 -map 1 -c copy -metadata:s:s:0 language=eng"
         " -metadata:s:s:1 language=deu texts.mkv"_s);
    make(sound + u"a.m4a a.mp3"_s);
    make(clip + u"-frames:v 1 cover.jpg"_s);
    make(u"-i a.mp3 -i cover.jpg -map 0 -map 1 -c copy cover.mp3"_s);
    make(u"-i av.webm -c:v copy -c:a pcm_s16le pcm.mkv"_s);
    makePictures();
    makeBrokenFiles();
}

void TestRunnerTranscode::makePictures()
{
    const QString source = u"-f lavfi -i "_s;
    make(source + u"testsrc2=d=0.4:s=161x91,format=yuv444p "_s + asVp9 + u"odd444.webm"_s);
    make(source + u"testsrc2=d=0.4:s=160x91,format=yuv420p "_s + asVp9 + u"oddheight.webm"_s);
    const QString small = source + u"testsrc2=d=0.4:s=160x90,format="_s;
    make(small + u"gbrp -c:v ffv1 rgb.mkv"_s);
    make(small + u"yuv422p10le -c:v ffv1 ten.mkv"_s);
    make(small + u"gray -c:v ffv1 grey.mkv"_s);
    make(small + u"yuv420p10le -c:v ffv1 -color_primaries bt2020 -color_trc smpte2084"
                 " -colorspace bt2020nc hdr.mkv"_s);
    const QString dark = source + u"color=0x201008:d=0.4:s=160x90,"_s;
    const QString full = dark + u"scale=out_range=full,format="_s;
    make(full + u"yuv420p -color_range pc "_s + asVp9 + u"full.webm"_s);
    make(full + u"yuv444p10le -color_range pc "_s + asVp9 + u"full10.webm"_s);
    make(full + u"yuvj420p -c:v mjpeg -q:v 2 fullj.mkv"_s);
    make(dark + u"format=gbrp -c:v ffv1 darkrgb.mkv"_s);
    make(dark + u"format=yuv420p "_s + asVp9 + u"dark.webm"_s);
    // Neither of these says when its pictures, which come in another order, are shown.
    make(source + u"testsrc2=d=0.4:s=160x90:r=25 -c:v mpeg4 -bf 2 untimed.avi"_s);
    make(source + u"testsrc2=d=0.4:s=160x90:r=25 -c:v libx264 -bf 2 untimed.h264"_s);
    make(source + u"testsrc2=d=0.4:s=160x90:r=50,interlace -c:v mpeg2video -flags +ildct+ilme"
                  " fields.ts"_s);
    // White over black; turned by a quarter the white comes to one side.
    make(source + u"color=white:d=0.4:s=160x90,pad=160:180:0:0:black "_s + asVp9 + u"halves.mp4"_s);
    for (const QString &angle : {u"90"_s, u"180"_s}) {
        make(u"-i halves.mp4 -c copy -metadata:s:v rotate=%1 turned%1.mp4"_s.arg(angle));
    }
    // Frames come every 40 ms, then one is missing, then there is nothing for an hour.
    make(source + u"testsrc2=d=1.2:s=160x90:r=25,select=not(eq(n\\,7)+eq(n\\,8)) -vsync vfr "_s +
         asVp9 + u"uneven.webm"_s);
    make(source +
         u"testsrc2=d=1.2:s=160x90:r=25,setpts=PTS+if(gte(N\\,20)\\,3600/TB\\,0) -vsync vfr "_s +
         asVp9 + u"gap.webm"_s);
    make(source + u"testsrc2=d=0.4:s=160x90:r=25 "_s + asVp9 + u"first.webm"_s);
    make(source + u"testsrc2=d=0.4:s=120x120:r=25 "_s + asVp9 + u"second.webm"_s);
    QVERIFY(writeFile(path(u"sizes.ffconcat"_s),
                      "ffconcat version 1.0\nfile first.webm\nfile second.webm\n"));
    make(u"-f concat -i sizes.ffconcat -c copy sizes.webm"_s);
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

bool TestRunnerTranscode::transcodes(const QString &name) const
{
    const ToolAnswer answer = runInProcess(playbackCommand(path(name), output()));
    return QTest::qVerify(answer.code == 0, "the transcode succeeds", answer.log.constData(),
                          __FILE__, __LINE__);
}

void TestRunnerTranscode::givesH264AndLeavesTheSoundAsItWas()
{
    QVERIFY(transcodes(u"av.webm"_s));
    QCOMPARE(streamFacts(output(), u"codec_name,width,height,pix_fmt"_s),
             (QStringList{u"h264,160,90,yuv420p"_s, u"opus"_s}));
    make(u"-i av.webm -vn -c copy copied.mp4"_s);
    const QStringList packets = packetsOf(output(), u"a:0"_s);
    QVERIFY(packets.size() > 50);
    QCOMPARE(packets, packetsOf(path(u"copied.mp4"_s), u"a:0"_s));
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
    make(u"-i out.mp4 -map 0:s:1 back.srt"_s);
    const QByteArray text = contentOf(path(u"back.srt"_s));
    // The sound begins a little before zero, so everything is shown that much later.
    const QRegularExpression kept(u"00:00:00,2.. --> 00:00:00,6..\\nHello"_s);
    QVERIFY2(kept.match(QString::fromUtf8(text)).hasMatch(), text.constData());
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
    row("odd and 4:4:4", "odd444.webm");
    row("odd height", "oddheight.webm");
    row("RGB", "rgb.mkv");
    row("10 bits", "ten.mkv");
    row("10 bits, 4:4:4, full range", "full10.webm");
    row("no times of showing", "untimed.avi");
    row("no times at all", "untimed.h264");
    row("fields", "fields.ts");
    row("grey", "grey.mkv");
}

void TestRunnerTranscode::fitsUnusualPictures()
{
    QFETCH(const QString, name);
    QVERIFY(transcodes(name));
    QCOMPARE(streamFacts(output(), u"codec_name,width,height,pix_fmt"_s),
             QStringList{u"h264,160,90,yuv420p"_s});
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
    row("full range", "full.webm");
    row("full range by the format's name", "fullj.mkv");
    row("full range, 10 bits", "full10.webm");
    row("RGB", "darkrgb.mkv");
    row("usual range", "dark.webm");
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
    make(u"-noautorotate -i out.mp4 -c:v ffv1 stored.mkv"_s);
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
    make(u"-i av.webm -i tags.meta -map_metadata 1 -c copy tags.webm"_s);
    QVERIFY(transcodes(u"tags.webm"_s));
    const ToolAnswer facts =
        runTool(u"ffprobe"_s, wordsOf("-v error -show_chapters -of csv=p=0 -show_entries "
                                      "format_tags=title:chapter=end_time:chapter_tags=title") +
                                  QStringList{output()});
    QCOMPARE(facts.output.trimmed().split('\n'), (QByteArrayList{"0.500000,one", "A title"}));
}

void TestRunnerTranscode::refusesWhatItCannotMakePlayable_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("reason"); // where it is ours to word
    const QString noVideo = u"There is no video to convert in "_s + m_folder.path() + u'/';
    row("sound", "a.m4a", noVideo + u"a.m4a"_s);
    row("sound with a cover", "cover.mp3", noVideo + u"cover.mp3"_s);
    row("text", "s.srt", noVideo + u"s.srt"_s);
    row("sound that the output cannot carry", "pcm.mkv",
        "Could not write header for output file #0 (incorrect codec parameters ?): "
        "Invalid argument");
    row("nothing in it", "empty.webm", "");
    row("cut off", "half.webm", "");
    row("noise after the header", "noise.webm", "");
    row("some pictures damaged", "flipped.webm", "");
}

void TestRunnerTranscode::refusesWhatItCannotMakePlayable()
{
    QFETCH(const QString, name);
    QFETCH(const QString, reason);
    QFile::remove(output());
    const ToolAnswer answer = runInProcess(playbackCommand(path(name), output()));
    QVERIFY2(answer.code != 0, answer.log.constData());
    QVERIFY2(lastLineOf(answer.log).contains(reason.toUtf8()), answer.log.constData());
    QVERIFY(!QFile::exists(output()));
}

void TestRunnerTranscode::worksAtALowerPriority()
{
    make(u"-f lavfi -i testsrc2=d=20:s=640x360:r=25 "_s + asVp9 + u"long.webm"_s);
    BackgroundRun run(playbackCommand(path(u"long.webm"_s), output()));
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
    QCOMPARE(run.cancel(), 255);
    QVERIFY(wereNice);
    QCOMPARE(niceness(QString::number(getpid())), own);
    QVERIFY(!QFile::exists(output()));
}

QTEST_GUILESS_MAIN(TestRunnerTranscode)
#include "tst_runner_transcode.moc"
