// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/platform/ffmpeg/runner_support.h"

#include <QDir>
#include <QFile>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace veltro::ffmpeg;

// The commands that yt-dlp gives to ffmpeg, run by us and by the stock tool on the same files.
class TestRunnerCopy : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void writesTheSameFileAsTheStockTool_data();
    void writesTheSameFileAsTheStockTool();
    void failsWithTheStockToolsLastLineAndLeavesNothing_data();
    void failsWithTheStockToolsLastLineAndLeavesNothing();
    void saysWhyItRefuses_data();
    void saysWhyItRefuses();
    void reportsStreamsOfAnInputWithoutOutput();
    void answersWhatTheLibrariesCan();
    void refusesToWriteIntoItsInput();
    void overwritesOnlyWhenAllowed();

private:
    void makeClips();
    void makeTexts();
    void makeBrokenFiles();
    [[nodiscard]] QString path(const QString &name) const { return m_folder.filePath(name); }
    [[nodiscard]] QStringList inFolder(const QString &command) const;
    [[nodiscard]] QStringList complete(const QString &command, const QString &output) const;

    QTemporaryDir m_folder;
};

namespace {

#define EVERYTHING "-map 0 -dn -ignore_unknown -c copy "

// These formats put random numbers and the version of the library into their files.
bool isRandom(const QString &extension)
{
    return QStringList{u"webm"_s, u"mkv"_s, u"mka"_s, u"opus"_s, u"ogg"_s}.contains(extension);
}

}

void TestRunnerCopy::initTestCase()
{
    QVERIFY(m_folder.isValid());
    makeTexts();
    makeClips();
    makeBrokenFiles();
}

void TestRunnerCopy::makeTexts()
{
    QVERIFY(writeFile(path(u"s.vtt"_s), "WEBVTT\n\n00:00:00.300 --> 00:00:00.700\nHello "
                                        "<b>there</b>\n\n00:00:00.800 --> 00:00:01.200\nTwo\n"
                                        "lines\n"));
    QVERIFY(writeFile(path(u"s.srt"_s), "1\n00:00:00,300 --> 00:00:00,700\nHello\n\n"
                                        "2\n00:00:00,800 --> 00:00:01,200\n<i>Two</i>\nlines\n"));
    QVERIFY(writeFile(path(u"chapters.meta"_s),
                      ";FFMETADATA1\ntitle=A title\n[CHAPTER]\nTIMEBASE=1/1000\nSTART=0\nEND=600\n"
                      "title=one\n[CHAPTER]\nTIMEBASE=1/1000\nSTART=600\nEND=1400\ntitle=two\n"));
    QVERIFY(writeFile(path(u"list.ffconcat"_s),
                      "ffconcat version 1.0\nfile 'av.mp4'\nfile 'av.mp4'\noutpoint 0.9\n"));
}

void TestRunnerCopy::makeClips()
{
    const QString video = u"-f lavfi -i testsrc2=d=1.4:s=160x90:r=25 "_s;
    const QString audio = u"-f lavfi -i sine=d=1.4 "_s;
    const QString h264 =
        u"-c:v libx264 -preset ultrafast -bf 2 -g 10 -pix_fmt yuv420p -threads 1 "_s;
    const QString vp9 = u"-c:v libvpx-vp9 -deadline realtime -cpu-used 8 -g 10 "_s;
    for (const QString &command : {
             video + h264 + u"v.mp4"_s,
             video + vp9 + u"v.webm"_s,
             audio + u"a.m4a a.flac a.mp3 a.aac -c:a libopus a.webm -t 0.6 short.m4a"_s,
             video + audio + h264 + u"-c:a aac av.ts"_s,
             video + audio + vp9 + u"-c:a libopus av.webm"_s,
             u"-i av.ts -c copy av.mp4 -c copy -hls_time 0.4 -hls_list_size 0 list.m3u8"_s,
             u"-i av.ts -c copy av.flv -c:v mpeg2video -c:a mp2 av.mpg"_s,
             // The counter of a transport stream begins again after 95443.7 seconds.
             u"-i av.mp4 -c copy -output_ts_offset 95441.7 wrapping.ts"
             " -c copy -output_ts_offset 5000 far.mkv"_s,
             u"-i av.mp4 -i s.vtt -map 0 -map 1 -c copy -c:s mov_text avs.mp4"_s,
             u"-i av.webm -i s.srt -map 0 -map 1 -c copy avs.mkv"_s,
             u"-i av.mp4 -i chapters.meta -map_metadata 1 -c copy chapters.mp4"_s,
             video + u"-frames:v 1 cover.jpg -frames:v 1 cover.png"_s,
         }) {
        QVERIFY(makeMedia(command, m_folder.path()));
    }
    QVERIFY(QFile::copy(path(u"av.ts"_s), path(u"ts_inside.mp4"_s)));
    const QByteArray once = contentOf(path(u"av.ts"_s));
    QVERIFY(writeFile(path(u"twice.ts"_s), once + once));
}

void TestRunnerCopy::makeBrokenFiles()
{
    for (const QString &name : {u"av.mp4"_s, u"av.ts"_s, u"av.webm"_s}) {
        const QByteArray whole = contentOf(path(name));
        QVERIFY(writeFile(path(u"half_"_s + name), whole.first(whole.size() * 6 / 10)));
    }
    QVERIFY(writeFile(path(u"empty.mp4"_s), {}));
    QVERIFY(writeFile(path(u"words.mp4"_s), QByteArray("Not a film at all. ").repeated(200)));
    // They name a film that lies beside them.
    QVERIFY(writeFile(path(u"playlist.mp4"_s),
                      "#EXTM3U\n#EXT-X-TARGETDURATION:2\n#EXTINF:2,\nav.ts\n#EXT-X-ENDLIST\n"));
    QVERIFY(writeFile(path(u"script.mp4"_s), "ffconcat version 1.0\nfile 'av.ts'\n"));
}

// The options name files by their last part only.
QStringList TestRunnerCopy::inFolder(const QString &command) const
{
    QStringList words = wordsOf(command);
    for (qsizetype i = 1; i < words.size(); ++i) {
        if (words[i - 1] == u"-i" || words[i - 1] == u"-attach") {
            words[i] = u"file:"_s + path(words[i]);
        }
    }
    return words;
}

QStringList TestRunnerCopy::complete(const QString &command, const QString &output) const
{
    return wordsOf("-y -loglevel repeat+info") + inFolder(command) +
           QStringList{u"-movflags"_s, u"+faststart"_s, u"file:"_s + output};
}

void TestRunnerCopy::writesTheSameFileAsTheStockTool_data()
{
    QTest::addColumn<QString>("command");
    QTest::addColumn<QString>("extension");
    row("merge to mp4", "-i v.mp4 -i a.m4a -c copy -map 1:a:0 -map 0:v:0", "mp4");
    row("merge to webm", "-i v.webm -i a.webm -c copy -map 0:v:0 -map 1:a:0", "webm");
    row("merge kinds to mkv", "-i v.mp4 -i a.webm -c copy -map 0:v:0 -map 1:a:0", "mkv");
    row("merge VP9 and Opus to mp4", "-i v.webm -i a.webm -c copy -map 0:v:0 -map 1:a:0", "mp4");
    row("merge transport streams",
        "-i av.ts -i av.ts -c copy -map 0:a:0 -bsf:a:0 aac_adtstoasc -map 1:v:0", "mp4");
    row("transport stream in mp4", "-i ts_inside.mp4 " EVERYTHING "-f mp4 -bsf:a aac_adtstoasc",
        "mp4");
    row("m4a container", "-i a.m4a " EVERYTHING "-f mp4", "m4a");
    row("doubled index", "-i av.mp4 " EVERYTHING, "mp4");
    row("doubled index, webm", "-i av.webm " EVERYTHING, "webm");
    row("stretched", "-i av.mp4 " EVERYTHING "-aspect 1.777000", "mp4");
    row("stretched webm", "-i av.webm " EVERYTHING "-aspect 2.000000", "webm");
    for (const QString &input : {u"av.mp4"_s, u"av.ts"_s, u"av.webm"_s}) {
        row(qPrintable(u"timestamps of "_s + input),
            u"-i "_s + input +
                u" -c copy -bsf setts=ts=TS-STARTPTS -map 0 -dn -ignore_unknown -ss 0.001"_s,
            input.endsWith(u"webm"_s) ? u"webm"_s : u"mp4"_s);
    }
    row("subtitles into mp4",
        "-i av.mp4 -i s.vtt " EVERYTHING
        "-c:s mov_text -map -0:s -map 1:0 -metadata:s:s:0 language=eng",
        "mp4");
    row("subtitles again, two tracks",
        "-i avs.mp4 -i s.vtt -i s.srt " EVERYTHING
        "-c:s mov_text -map -0:s -map 1:0 -metadata:s:s:0 language=eng -metadata:s:s:0 "
        "handler_name=English -metadata:s:s:0 title=English -map 2:0 -metadata:s:s:1 language=deu",
        "mp4");
    row("subtitles into webm",
        "-i av.webm -i s.vtt " EVERYTHING "-map -0:s -map 1:0 -metadata:s:s:0 language=eng",
        "webm");
    row("subtitles into mkv",
        "-i av.mp4 -i s.srt " EVERYTHING "-map -0:s -map 1:0 -metadata:s:s:0 language=eng", "mkv");
    row("subtitles into m4a", "-i a.m4a -i s.vtt " EVERYTHING "-c:s mov_text -map -0:s -map 1:0",
        "m4a");
    row("vtt to srt", "-i s.vtt -f srt", "srt");
    row("srt to vtt", "-i s.srt -f webvtt", "vtt");
    row("vtt to ass", "-i s.vtt -f ass", "ass");
    row("srt to lrc", "-i s.srt -f lrc", "lrc");
    row("subtitles out of mp4", "-i avs.mp4 -map 0:s", "srt");
    row("sound copied to m4a", "-i av.ts -vn -acodec copy -bsf:a aac_adtstoasc", "m4a");
    row("sound copied to opus", "-i av.webm -vn -acodec copy", "opus");
    row("sound copied to adts", "-i av.mp4 -vn -acodec copy -f adts", "aac");
    row("sound to aac", "-i av.webm -vn -acodec aac -b:a 192.0k", "m4a");
    row("sound to mp3", "-i av.webm -vn -acodec libmp3lame -b:a 192.0k", "mp3");
    row("sound to mp3 by quality", "-i av.mp4 -vn -acodec libmp3lame -q:a 5.0", "mp3");
    row("sound to opus", "-i av.mp4 -vn -acodec libopus -b:a 128.0k", "opus");
    row("sound to flac", "-i av.mp4 -vn -acodec flac -b:a 192.0k", "flac");
    row("sound to vorbis", "-i av.mp4 -vn -acodec libvorbis -q:a 5.0", "ogg");
    row("sound to wav", "-i av.mp4 -vn -f wav", "wav");
    row("sound to wav of another kind", "-i a.m4a -vn -acodec pcm_s24le", "wav");
    row("sound to mp3 from a webm", "-i a.webm -vn -acodec libmp3lame -q:a 0", "mp3");
    row("sound to m4a from mp3", "-i a.mp3 -vn -acodec aac -b:a 192.0k", "m4a");
    row("sound to flac from wav", "-i a.flac -vn -acodec flac -compression_level 8", "flac");
    row("sound copied to mp3", "-i a.mp3 -vn -acodec copy", "mp3");
    row("sound copied to flac", "-i a.flac -vn -acodec copy", "flac");
    row("sound copied to ogg", "-i a.flac -vn -acodec copy", "ogg");
    row("sound copied to mka", "-i a.webm -i s.srt -map 0 -map 1 -c copy", "mka");
    row("sound to alac", "-i a.flac -vn -acodec alac", "m4a");
    row("sound at another rate", "-i a.mp3 -vn -ar 22050 -ac 2 -sample_fmt s16", "flac");
    row("section of mp4", "-ss 0.5 -t 0.6 -i av.mp4 -c copy", "mp4");
    row("section of a transport stream", "-ss 0.5 -t 0.6 -i av.ts -c copy", "mp4");
    row("section of webm", "-ss 0.7 -i av.webm -c copy", "webm");
    row("end cut off", "-i av.mp4 -c copy -t 0.8", "mp4");
    row("both ends cut off", "-i av.mp4 -c copy -ss 0.3 -to 1.1", "mp4");
    row("limited size", "-i av.mp4 -c copy -fs 9000", "mp4");
    row("shortest", "-i short.m4a -i v.mp4 -map 0 -map 1 -c copy -shortest", "mp4");
    row("chapters and tags",
        "-i av.mp4 -i chapters.meta " EVERYTHING "-map_metadata 1 -write_id3v1 1 -metadata "
        "title=T -metadata:s:0 language=eng",
        "mp4");
    row("chapters of a section", "-ss 0.5 -i chapters.mp4 " EVERYTHING, "mp4");
    row("no chapters, no tags", "-i chapters.mp4 " EVERYTHING "-map_chapters -1 -map_metadata -1",
        "mp4");
    row("joined", "-hide_banner -nostdin -f concat -safe 0 -i list.ffconcat " EVERYTHING, "mp4");
    row("playlist said to be one", "-f hls -i list.m3u8 -c copy -f mpegts", "part");
    row("cover as attachment",
        "-i avs.mkv -map 0 -c copy -attach cover.jpg -metadata:s:3 mimetype=image/jpeg", "mkv");
    row("cover as picture",
        "-i av.mp4 -i cover.jpg -map 0 -map 1 -c copy -disposition:2 attached_pic", "mp4");
    row("cover in mp3",
        "-i a.mp3 -i cover.jpg -c copy -map 0:0 -map 1:0 -write_id3v1 1 -id3v2_version 3", "mp3");
    row("cover in m4a", "-i a.m4a -i cover.jpg -map 0 -map 1 -c copy -disposition:v:0 attached_pic",
        "m4a");
    row("cover in flac",
        "-i a.flac -i cover.png -map 0 -map 1 -c copy -disposition:v attached_pic -metadata:s:v "
        "comment=Cover",
        "flac");
    row("two attachments",
        "-i av.webm " EVERYTHING "-attach cover.jpg -metadata:s:2 mimetype=image/jpeg -attach "
        "cover.png -metadata:s:3 mimetype=image/png -metadata:s:3 filename=small.png",
        "mkv");
    row("tags of a stream into the file",
        "-i avs.mkv -i chapters.meta -map 0 -c copy -map_metadata:g 1:g -map_metadata:s:a 0:s:v "
        "-metadata:s:v title= -metadata comment=a=b",
        "mkv");
    row("chapters of another file", "-i av.mp4 -i chapters.mp4 -map 0 -c copy -map_chapters 1",
        "mkv");
    row("dispositions by hand",
        "-i avs.mkv -map 0 -c copy -disposition:s:0 default+forced -disposition:a 0", "mkv");
    row("tag of a codec", "-i av.mp4 -map 0 -c copy -tag:v avc3", "mp4");
    row("timestamps kept", "-copyts -ss 0.5 -i av.ts -c copy", "ts");
    row("another start", "-itsoffset 2 -i v.mp4 -i a.m4a -map 0 -map 1 -c copy", "mkv");
    row("one frame", "-i av.mp4 -an -frames:v 1 -c:v mjpeg -pix_fmt yuvj420p -update 1", "jpg");
    row("fragmented mp4",
        "-i av.mp4 -c copy -frag_duration 500000 -movflags +frag_keyframe+empty_moov", "mp4");
    row("picture to jpg", "-f image2 -pattern_type none -i cover.png -update 1 -bsf:v mjpeg2jpeg",
        "jpg");
    row("picture to png", "-f image2 -pattern_type none -i cover.jpg -update 1", "png");
    row("best of two files", "-i avs.mkv -i av.mp4 -c copy", "mkv");
    row("optional map", "-i av.mp4 -map 0:v -map 0:s? -c copy", "mp4");
    row("bare aac", "-i a.aac -c copy -f mp4", "mp4");
    row("flash video", "-i av.mp4 -c copy -f flv", "flv");
    row("flash video into mp4", "-i av.flv -c copy", "mp4");
    row("program stream into a transport stream", "-i av.mpg -c copy -f mpegts", "ts");
    row("timestamps that begin again", "-i twice.ts -c copy", "mp4");
    row("timestamps that begin again, encoded", "-i twice.ts -vn -c:a aac", "m4a");
    row("timestamps that wrap around", "-i wrapping.ts -c copy", "mp4");
    row("timestamps far from zero", "-i far.mkv -c copy", "mp4");
    row("cut off transport stream", "-i half_av.ts -c copy", "mp4");
    row("cut off webm", "-i half_av.webm -c copy", "webm");
    // Whatever the output's format is, our rate is variable, which this tool must be told.
    row("pictures encoded", "-i av.mp4 -map 0 -vf scale=80:-2 -preset ultrafast -vsync vfr", "mp4");
    row("key frames forced",
        "-i av.mp4 -map 0 -force_key_frames 0.500000,1.100000 -preset ultrafast -vsync vfr", "mp4");
    row("key frames by expression",
        "-i av.mp4 -map 0 -force_key_frames expr:gte(t,n_forced*0.3) -preset ultrafast -vsync vfr",
        "mp4");
    row("key frames at chapters",
        "-i chapters.mp4 -map 0:v -force_key_frames chapters+0.1,0.3 -preset ultrafast -vsync vfr",
        "mp4");
    row("key frames of the source",
        "-i av.mp4 -map 0:v -force_key_frames source -preset ultrafast -vsync vfr", "mkv");
    row("repeated", "-stream_loop 2 -i v.mp4 -c copy", "mkv");
    row("repeated without end", "-stream_loop -1 -i v.mp4 -c copy -t 4", "mp4");
    row("counted from the end", "-sseof -0.6 -i av.mp4 -c copy", "mp4");
    row("counted from before the beginning", "-sseof -60 -i av.webm -c copy", "webm");
    row("shortest, encoded",
        "-i short.m4a -i v.mp4 -map 0 -map 1 -c:a copy -c:v mpeg4 -shortest -vsync vfr", "mp4");
    row("section encoded", "-ss 0.5 -i av.webm -t 0.5 -preset ultrafast -vsync vfr", "mkv");
    row("options by their older names",
        "-i av.mp4 -an -vcodec mjpeg -vframes 2 -vf scale=80:-2 -pix_fmt yuvj420p -vsync vfr",
        "mkv");
    row("filters and qualities by their older names",
        "-i av.ts -vn -absf aac_adtstoasc -acodec copy -t 5 -t 0.7 -vn -novn -codec:v copy", "mp4");
    row("sound's quality by its older name", "-i av.mp4 -vn -acodec libmp3lame -aq 5", "mp3");
}

void TestRunnerCopy::writesTheSameFileAsTheStockTool()
{
    QFETCH(QString, command);
    QFETCH(const QString, extension);
    if (isRandom(extension)) {
        command += u" -fflags +bitexact"_s;
    }
    QVERIFY(QDir(m_folder.path()).mkpath(u"tool"_s) && QDir(m_folder.path()).mkpath(u"ours"_s));
    const QString theirs = path(u"tool/out."_s + extension);
    const QString ours = path(u"ours/out."_s + extension);
    const ToolAnswer expected = runTool(u"ffmpeg"_s, complete(command, theirs));
    QVERIFY2(expected.code == 0, expected.log.constData());
    const ToolAnswer answer = runInProcess(complete(command, ours));
    QVERIFY2(answer.code == 0, answer.log.constData());
    const QByteArray written = contentOf(ours);
    QVERIFY(!written.isEmpty());
    QVERIFY2(written == contentOf(theirs), answer.log.constData());
}

void TestRunnerCopy::failsWithTheStockToolsLastLineAndLeavesNothing_data()
{
    QTest::addColumn<QString>("command");
    row("no such input", "-i nothing.mp4 -c copy");
    row("empty input", "-i empty.mp4 -c copy");
    row("input that is no media", "-i words.mp4 -c copy");
    row("input without its index", "-i half_av.mp4 -c copy -f mp4 -t 0");
    row("unknown option", "-i av.mp4 -nonsense 1 -c copy");
    row("stream that is not there", "-i av.mp4 -map 0:s -c copy");
    row("file that is not there", "-i av.mp4 -map 3 -c copy");
    row("unknown encoder", "-i av.mp4 -c:v nonsense");
    row("unknown muxer option for the input", "-movflags faststart -i av.mp4 -c copy");
    row("nothing to write", "-i a.m4a -an -c copy");
    row("unknown bitstream filter", "-i av.mp4 -c copy -bsf:v nonsense");
    row("time that is none", "-i av.mp4 -t soon -c copy");
    row("map that is a word", "-i av.mp4 -map video -c copy");
    row("negative map first", "-i av.mp4 -map -0:a -c copy");
    row("map with a strange specifier", "-i av.mp4 -map 0:z -c copy");
    row("decoder of another kind", "-c:v aac -i av.mp4 -c copy");
    row("encoder of another kind", "-i av.mp4 -c:v aac");
    row("filter of a copy", "-i av.mp4 -vf scale=80:-2 -c copy");
    row("size that is none", "-i av.mp4 -s large");
    row("rate that is none", "-i av.mp4 -r fast");
    row("number that is none", "-i av.mp4 -c copy -fs much");
    row("unknown input format", "-f nonsense -i av.mp4 -c copy");
    row("unknown output format", "-i av.mp4 -c copy -f nonsense");
    row("unknown pixel format", "-i av.mp4 -pix_fmt nonsense");
    row("aspect that is none", "-i av.mp4 -c copy -aspect wide");
    row("tag without a value", "-i av.mp4 -c copy -metadata title");
    row("tags of a file that is not there", "-i av.mp4 -c copy -map_metadata 4");
    row("chapters of a file that is not there", "-i av.mp4 -c copy -map_chapters 4");
    row("attachment that is not there", "-i av.mp4 -c copy -attach nothing.ttf");
    row("end before the start", "-i av.mp4 -ss 1 -to 0.5 -c copy");
    row("option without its value", "-i av.mp4 -c copy -map_metadata");
    row("name after two dashes", "-i av.mp4 -c copy -- -out");
    row("input's option before the output", "-i av.mp4 -itsoffset 1 -c copy");
}

void TestRunnerCopy::failsWithTheStockToolsLastLineAndLeavesNothing()
{
    QFETCH(const QString, command);
    const QString output = path(u"failed.mp4"_s);
    const ToolAnswer expected = runTool(u"ffmpeg"_s, complete(command, output));
    QFile::remove(output);
    const ToolAnswer answer = runInProcess(complete(command, output));
    QCOMPARE(answer.code, expected.code);
    QCOMPARE(answer.code, 1);
    // The tool adds this after some failures, which hides the reason that stands before it.
    const QByteArray reason =
        expected.log.trimmed().endsWith("Conversion failed!")
            ? lastLineOf(expected.log.trimmed().chopped(sizeof("Conversion failed!") - 1))
            : lastLineOf(expected.log);
    QCOMPARE(lastLineOf(answer.log), reason);
    QVERIFY(!QFile::exists(output));
}

void TestRunnerCopy::saysWhyItRefuses_data()
{
    QTest::addColumn<QString>("command");
    QTest::addColumn<QString>("output");
    QTest::addColumn<QString>("reason");
    const char *const header = "Could not write header for output file #0 (incorrect codec "
                               "parameters ?): Invalid argument";
    row("codec that webm lacks", "-i av.mp4 -c copy", "out.webm", header);
    row("text that mp4 lacks", "-i s.srt -map 0 -c copy -f mp4", "out.mp4", header);
    row("text as pictures", "-i s.srt -c:s dvdsub -f matroska", "out.mkv",
        "Error initializing output stream 0:0 -- Subtitle encoding currently only possible from "
        "text to text or bitmap to bitmap");
    row("folder that is missing", "-i av.mp4 -c copy", "missing/out.mp4",
        "file:OUTPUT: No such file or directory");
    row("unknown ending", "-i av.mp4 -c copy", "out.nonsense", "file:OUTPUT: Invalid argument");
    row("pipe", "-i av.mp4 -c copy -f mpegts pipe:1 -c copy", "out.ts",
        "Writing to a pipe is not supported by this program");
    row("graph of several streams", "-i av.mp4 -filter_complex overlay", "out.mp4",
        "Option 'filter_complex' is not supported by this program");
    row("specifier where none belongs", "-i av.mp4 -vcodec:0 copy", "out.mp4",
        "Error splitting the argument list: Option not found");
    for (const QString &name : {u"playlist.mp4"_s, u"script.mp4"_s}) {
        row(qPrintable(name + u", which names another file"_s), u"-i "_s + name + u" -c copy"_s,
            "out.ts", u"file:"_s + path(name) + u": Invalid data found when processing input"_s);
    }
}

void TestRunnerCopy::saysWhyItRefuses()
{
    QFETCH(const QString, command);
    QFETCH(const QString, output);
    QFETCH(QString, reason);
    const QString target = path(output);
    const ToolAnswer answer = runInProcess(complete(command, target));
    QCOMPARE(answer.code, 1);
    QCOMPARE(QString::fromUtf8(lastLineOf(answer.log)), reason.replace(u"OUTPUT"_s, target));
    QVERIFY(!QFile::exists(target));
}

void TestRunnerCopy::reportsStreamsOfAnInputWithoutOutput()
{
    const ToolAnswer answer = runInProcess({u"-i"_s, u"file:"_s + path(u"av.mp4"_s)});
    QCOMPARE(answer.code, 1);
    QCOMPARE(lastLineOf(answer.log), "At least one output file must be specified");
    // As yt-dlp looks for a file's audio codec.
    const QRegularExpression audio(
        u"Stream\\s*#\\d+:\\d+(?:\\[0x[0-9a-f]+\\])?(?:\\([a-z]{3}\\))?:\\s*Audio:"
        u"\\s*([0-9a-z]+)"_s);
    QCOMPARE(audio.match(QString::fromUtf8(answer.log)).captured(1), u"aac"_s);
}

void TestRunnerCopy::answersWhatTheLibrariesCan()
{
    const ToolAnswer filters = runInProcess({u"-bsfs"_s});
    QCOMPARE(filters.code, 0);
    QVERIFY(filters.output.split('\n').contains("setts"));
    QVERIFY(filters.log.startsWith("ffmpeg version "));
    const ToolAnswer version = runInProcess({u"-version"_s});
    QCOMPARE(version.code, 0);
    QVERIFY(version.output.startsWith("ffmpeg version "));
}

void TestRunnerCopy::refusesToWriteIntoItsInput()
{
    const QString input = path(u"itself.mp4"_s);
    const QString link = path(u"linked.mp4"_s);
    QVERIFY(QFile::copy(path(u"av.mp4"_s), input));
    QVERIFY(QFile::link(input, link));
    for (const QString &output : {input, link}) {
        const ToolAnswer answer =
            runInProcess({u"-y"_s, u"-i"_s, input, u"-c"_s, u"copy"_s, output});
        QCOMPARE(answer.code, 1);
        QCOMPARE(lastLineOf(answer.log), "FFmpeg cannot edit existing files in-place.");
    }
    QCOMPARE(contentOf(input), contentOf(path(u"av.mp4"_s)));
}

void TestRunnerCopy::overwritesOnlyWhenAllowed()
{
    const QString output = path(u"there.mp4"_s);
    QVERIFY(writeFile(output, "precious"));
    const QStringList rest{u"-i"_s, path(u"av.mp4"_s), u"-c"_s, u"copy"_s, output};
    const ToolAnswer refused = runInProcess(rest);
    QCOMPARE(refused.code, 1);
    QCOMPARE(lastLineOf(refused.log), "File '" + output.toUtf8() + "' already exists. Exiting.");
    QCOMPARE(contentOf(output), "precious");
    QCOMPARE(runInProcess(QStringList{u"-y"_s} + rest).code, 0);
    QVERIFY(contentOf(output) != "precious");
}

QTEST_GUILESS_MAIN(TestRunnerCopy)
#include "tst_runner_copy.moc"
