// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/ffmpeg/media_tools.h"
#include "tests/platform/ffmpeg/runner_support.h"

#include <QTemporaryDir>
#include <QTest>

#include <cmath>

using namespace Qt::StringLiterals;
using namespace veltro::ffmpeg;

class TestMediaDuration : public QObject {
    Q_OBJECT

    [[nodiscard]] QString path(const QString &name) const { return m_folder.filePath(name); }
    [[nodiscard]] std::optional<double> duration(const QString &name) const
    {
        return mediaTools().duration(path(name).toStdString());
    }

    QTemporaryDir m_folder;

private Q_SLOTS:
    void initTestCase();
    void isKnownOfEveryContainer_data();
    void isKnownOfEveryContainer();
    void needsTheHeaderAloneWhereThatTells();
    void isUnknownOfWhatDoesNotPlay_data();
    void isUnknownOfWhatDoesNotPlay();
};

void TestMediaDuration::initTestCase()
{
    QVERIFY(makeMedia(u"-f lavfi -i testsrc2=d=2.4:s=160x90:r=25 -f lavfi -i sine=d=2.4"
                      " -c:v libx264 -c:a aac whole.mp4"_s,
                      m_folder.path()));
}

void TestMediaDuration::isKnownOfEveryContainer_data()
{
    QTest::addColumn<QString>("options");
    QTest::addColumn<QString>("file");
    row("mp4", "-c copy", "a.mp4");
    row("mp4 in fragments", "-c copy -movflags frag_keyframe+empty_moov+default_base_moof",
        "frag.mp4");
    row("mp4 in fragments that begin late",
        "-c copy -output_ts_offset 700 -movflags frag_keyframe+empty_moov", "late.mp4");
    row("matroska", "-c copy", "a.mkv");
    row("matroska whose writer did not know the end", "-c copy -live 1", "live.mkv");
    row("transport stream", "-c copy -muxdelay 4", "a.ts");
    row("flash", "-c copy", "a.flv");
    row("flash without an index", "-c copy -flvflags no_duration_filesize", "live.flv");
    row("avi", "-c copy", "a.avi");
    row("ogg", "-vn -c:a libopus", "a.opus");
    row("wave", "-vn", "a.wav");
    row("mp3", "-vn", "a.mp3");
    row("mp3 of changing rate that does not tell", "-vn -q:a 9 -write_xing 0", "bare.mp3");
    row("aac in frames", "-vn -c:a copy -f adts", "a.aac");
    row("flac", "-vn", "a.flac");
    row("moving pictures without sound", "-an -r 10", "a.gif");
}

void TestMediaDuration::isKnownOfEveryContainer()
{
    QFETCH(const QString, options);
    QFETCH(const QString, file);
    QVERIFY(makeMedia(u"-i whole.mp4 "_s + options + u' ' + file, m_folder.path()));
    const auto seconds = duration(file);
    QVERIFY(seconds);
    QVERIFY2(std::abs(*seconds - 2.4) < 0.15, qPrintable(QString::number(*seconds)));
}

void TestMediaDuration::needsTheHeaderAloneWhereThatTells()
{
    QVERIFY(makeMedia(u"-i whole.mp4 -c copy -movflags +faststart head.mp4"_s, m_folder.path()));
    const QByteArray whole = contentOf(path(u"head.mp4"_s));
    QVERIFY(writeFile(path(u"head.mp4"_s), whole.left(whole.indexOf("mdat") + 4)));
    const auto seconds = duration(u"head.mp4"_s);
    QVERIFY(seconds && std::abs(*seconds - 2.4) < 0.05);
}

void TestMediaDuration::isUnknownOfWhatDoesNotPlay_data()
{
    QTest::addColumn<QString>("file");
    QVERIFY(makeMedia(u"-i whole.mp4 -frames:v 1 picture.jpg"_s, m_folder.path()));
    QVERIFY(writeFile(path(u"words.mp4"_s), "no media at all\n"));
    QVERIFY(writeFile(path(u"empty.mp4"_s), {}));
    QVERIFY(writeFile(path(u"script.mp4"_s), "ffconcat version 1.0\nfile whole.mp4\n"));
    QVERIFY(writeFile(path(u"list.mp4"_s), "#EXTM3U\n#EXTINF:9,\nwhole.mp4\n#EXT-X-ENDLIST\n"));
    for (const char *file :
         {"picture.jpg", "words.mp4", "empty.mp4", "script.mp4", "list.mp4", "missing.mp4", "."}) {
        QTest::newRow(file) << QString::fromLatin1(file);
    }
}

void TestMediaDuration::isUnknownOfWhatDoesNotPlay()
{
    QFETCH(const QString, file);
    QVERIFY(!duration(file));
}

QTEST_GUILESS_MAIN(TestMediaDuration)
#include "tst_media_duration.moc"
