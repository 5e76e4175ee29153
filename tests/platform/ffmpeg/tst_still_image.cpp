// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/ffmpeg/media_tools.h"
#include "tests/platform/ffmpeg/runner_support.h"

#include <QColor>
#include <QImage>
#include <QTemporaryDir>
#include <QTest>

#include <array>
#include <cstdlib>

using namespace Qt::StringLiterals;
using namespace veltro::ffmpeg;

namespace {

constexpr QRgb red = qRgb(255, 0, 0);
constexpr QRgb green = qRgb(0, 255, 0);
constexpr QRgb blue = qRgb(0, 0, 255);
constexpr QRgb white = qRgb(255, 255, 255);

// Coding moves colours a little.
bool isNear(QRgb seen, QRgb wanted, int distance = 24)
{
    return std::abs(qRed(seen) - qRed(wanted)) <= distance &&
           std::abs(qGreen(seen) - qGreen(wanted)) <= distance &&
           std::abs(qBlue(seen) - qBlue(wanted)) <= distance;
}

QString nameOf(QRgb colour)
{
    return QColor(colour).name();
}

// A matrix as it stands in a track's header: 16.16, the third column 2.30.
QByteArray matrix(int a, int b, int c, int d)
{
    QByteArray bytes;
    const auto add = [&bytes](int value, int one) {
        const auto number = static_cast<quint32>(value * one);
        for (int shift = 24; shift >= 0; shift -= 8) {
            bytes.append(static_cast<char>((number >> shift) & 0xFF));
        }
    };
    for (const int value : {a, b, 0, c, d, 0, 0, 0}) {
        add(value, 1 << 16);
    }
    add(1, 1 << 30);
    return bytes;
}

}

class TestStillImage : public QObject {
    Q_OBJECT

    [[nodiscard]] QString path(const QString &name) const { return m_folder.filePath(name); }
    [[nodiscard]] QImage still(const QString &name, double seconds = 1.0, int limit = 800) const
    {
        const auto bytes = mediaTools().still(path(name).toStdString(), seconds, limit, limit, 0.7);
        return bytes ? QImage::fromData(bytes->data(), static_cast<int>(bytes->size()), "JPEG")
                     : QImage();
    }

    QTemporaryDir m_folder;

private Q_SLOTS:
    void initTestCase();
    void showsWhatAPlayerShowsAtTheTime_data();
    void showsWhatAPlayerShowsAtTheTime();
    void hasSquarePixelsAndFitsWithoutBeingEnlarged_data();
    void hasSquarePixelsAndFitsWithoutBeingEnlarged();
    void standsUpright_data();
    void standsUpright();
    void keepsColours_data();
    void keepsColours();
    void isSmallerAtALowerQuality();
    void isNotTakenFromWhatHasNoPictures_data();
    void isNotTakenFromWhatHasNoPictures();
    void comesFromWhatIsLeftOfADamagedFile();
};

void TestStillImage::initTestCase()
{
    // Red for a second, green for the next, blue for the third; no key frame but the first.
    const QString film = u"-f lavfi -i color=red:s=320x180:r=25:d=1,format=yuv420p"
                         " -f lavfi -i color=0x00ff00:s=320x180:r=25:d=1,format=yuv420p"
                         " -f lavfi -i color=blue:s=320x180:r=25:d=1,format=yuv420p"
                         " -f lavfi -i sine=d=3"
                         " -filter_complex [0][1][2]concat=n=3[v] -map [v] -map 3 -g 300 "_s;
    for (const char *rest : {
             "-c:v libx264 -bf 3 h264.mp4",
             "-c:v libx264 -bf 3 -muxdelay 5 h264.ts",
             "-c:v libx264 -bf 3 -g 10 keys.flv",
             "-c:v libx264 -bf 2 -output_ts_offset 5000 -movflags frag_keyframe late.mp4",
             "-c:v mpeg4 -an mpeg4.avi",
             "-c:v libvpx-vp9 -cpu-used 8 -deadline realtime -c:a libopus vp9.webm",
             "-c:v libx264 -an bare.h264",
             "-an pictures.gif",
         }) {
        QVERIFY(makeMedia(film + QString::fromLatin1(rest), m_folder.path()));
    }
    QVERIFY(makeMedia(u"-i h264.mp4 -t 0.6 -c:v libx264 short.mkv"_s, m_folder.path()));
    QVERIFY(
        makeMedia(u"-i h264.mp4 -itsoffset 2 -i h264.mp4 -map 0:a -map 1:v -c copy behind.mkv"_s,
                  m_folder.path()));
}

void TestStillImage::showsWhatAPlayerShowsAtTheTime_data()
{
    QTest::addColumn<QString>("file");
    QTest::addColumn<double>("seconds");
    QTest::addColumn<QRgb>("colour");
    for (const char *file : {"h264.mp4", "h264.ts", "keys.flv", "late.mp4", "mpeg4.avi", "vp9.webm",
                             "bare.h264", "pictures.gif"}) {
        QTest::addRow("%s, the beginning", file) << QString::fromLatin1(file) << 0.0 << red;
        QTest::addRow("%s, before the change", file) << QString::fromLatin1(file) << 0.93 << red;
        QTest::addRow("%s, the change", file) << QString::fromLatin1(file) << 1.0 << green;
        QTest::addRow("%s, later", file) << QString::fromLatin1(file) << 2.5 << blue;
        QTest::addRow("%s, past the end", file) << QString::fromLatin1(file) << 60.0 << blue;
    }
    QTest::newRow("shorter than that") << u"short.mkv"_s << 1.0 << red;
    QTest::newRow("pictures that begin after the sound") << u"behind.mkv"_s << 1.0 << green;
}

void TestStillImage::showsWhatAPlayerShowsAtTheTime()
{
    QFETCH(const QString, file);
    QFETCH(const double, seconds);
    QFETCH(const QRgb, colour);
    const QImage image = still(file, seconds);
    QCOMPARE(image.size(), QSize(320, 180));
    const QRgb seen = image.pixel(image.rect().center());
    QVERIFY2(isNear(seen, colour), qPrintable(nameOf(seen)));
}

void TestStillImage::hasSquarePixelsAndFitsWithoutBeingEnlarged_data()
{
    QTest::addColumn<QString>("picture");
    QTest::addColumn<int>("limit");
    QTest::addColumn<QSize>("size");
    row("small", "s=64x48", 800, QSize(64, 48));
    row("odd", "s=33x17,format=gbrp", 800, QSize(33, 17));
    row("wide", "s=1920x1080", 800, QSize(800, 450));
    row("tall", "s=1080x1920", 800, QSize(450, 800));
    row("a strip", "s=4096x16", 800, QSize(800, 3));
    row("wide pixels", "s=320x240,setsar=2", 800, QSize(640, 240));
    row("wide pixels beyond the limit", "s=720x576,setsar=64/45", 800, QSize(800, 450));
    row("tall pixels", "s=640x240,setsar=1/2", 800, QSize(320, 240));
    row("pixels of no sense", "s=320x240,setsar=1/300", 800, QSize(320, 240));
    row("a limit of its own", "s=320x240", 100, QSize(100, 75));
    row("a single pixel", "s=320x240", 1, QSize(1, 1));
}

void TestStillImage::hasSquarePixelsAndFitsWithoutBeingEnlarged()
{
    QFETCH(const QString, picture);
    QFETCH(const int, limit);
    QFETCH(const QSize, size);
    QVERIFY(makeMedia(u"-f lavfi -i color=red:d=0.2:"_s + picture + u" -c:v ffv1 size.mkv"_s,
                      m_folder.path()));
    QCOMPARE(still(u"size.mkv"_s, 1.0, limit).size(), size);
}

void TestStillImage::standsUpright_data()
{
    QTest::addColumn<QByteArray>("transform");
    QTest::addColumn<QSize>("size");
    QTest::addColumn<QList<QRgb>>("corners"); // from the left above, with the clock
    constexpr QSize wide(320, 180);
    constexpr QSize tall(180, 320);
    // Stored: red, green above; blue, white below.
    row("as it is", matrix(1, 0, 0, 1), wide, QList<QRgb>{red, green, white, blue});
    row("a quarter with the clock", matrix(0, 1, -1, 0), tall,
        QList<QRgb>{blue, red, green, white});
    row("half", matrix(-1, 0, 0, -1), wide, QList<QRgb>{white, blue, red, green});
    row("a quarter against the clock", matrix(0, -1, 1, 0), tall,
        QList<QRgb>{green, white, blue, red});
    row("mirrored across", matrix(-1, 0, 0, 1), wide, QList<QRgb>{green, red, blue, white});
    row("mirrored down", matrix(1, 0, 0, -1), wide, QList<QRgb>{blue, white, green, red});
    row("mirrored on the falling diagonal", matrix(0, 1, 1, 0), tall,
        QList<QRgb>{red, blue, white, green});
    row("mirrored on the rising diagonal", matrix(0, -1, -1, 0), tall,
        QList<QRgb>{white, green, red, blue});
    row("nothing at all", matrix(0, 0, 0, 0), wide, QList<QRgb>{red, green, white, blue});
}

void TestStillImage::standsUpright()
{
    QFETCH(const QByteArray, transform);
    QFETCH(const QSize, size);
    QFETCH(const QList<QRgb>, corners);
    QVERIFY(makeMedia(u"-f lavfi -i color=red:s=320x180:d=0.2 -vf "
                      "drawbox=160:0:160:90:0x00ff00:fill,drawbox=0:90:160:90:blue:fill,"
                      "drawbox=160:90:160:90:white:fill -c:v libx264 -crf 10 upright.mp4"_s,
                      m_folder.path()));
    QByteArray content = contentOf(path(u"upright.mp4"_s));
    const qsizetype header = content.indexOf("tkhd");
    QVERIFY(header > 0);
    content.replace(header + 4 + 40, transform.size(), transform);
    QVERIFY(writeFile(path(u"upright.mp4"_s), content));

    const QImage image = still(u"upright.mp4"_s);
    QCOMPARE(image.size(), size);
    const int right = image.width() - 10;
    const int bottom = image.height() - 10;
    const std::array<QPoint, 4> places{QPoint(9, 9), QPoint(right, 9), QPoint(right, bottom),
                                       QPoint(9, bottom)};
    for (std::size_t i = 0; i < places.size(); ++i) {
        const QRgb seen = image.pixel(places[i]);
        QVERIFY2(isNear(seen, corners[static_cast<qsizetype>(i)], 40), qPrintable(nameOf(seen)));
    }
}

void TestStillImage::keepsColours_data()
{
    QTest::addColumn<QString>("options");
    QTest::addColumn<QString>("file");
    row("the usual", "-vf scale=out_color_matrix=bt601,format=yuv420p -c:v libx264 -crf 5 ",
        "c.mp4");
    row("high definition's matrix",
        "-vf scale=out_color_matrix=bt709,format=yuv420p -colorspace bt709 -c:v libx264 -crf 5 ",
        "c.mp4");
    row("high definition that tells nothing",
        "-vf scale=1280:720:out_color_matrix=bt709,format=yuv420p -c:v libx264 -crf 5 ", "c.mp4");
    row("full range",
        "-vf scale=out_range=full:out_color_matrix=bt601,format=yuv420p "
        "-color_range pc -c:v libx264 -crf 5 ",
        "c.mp4");
    row("ten bits", "-vf scale=out_color_matrix=bt601,format=yuv420p10 -c:v libx264 -crf 5 ",
        "c.mp4");
    row("high dynamic range's matrix",
        "-vf scale=out_color_matrix=bt2020,format=yuv420p10 -colorspace bt2020nc -color_primaries "
        "bt2020 -color_trc smpte2084 -c:v libx264 -crf 5 ",
        "c.mkv");
    row("no reduced colours", "-vf scale=out_color_matrix=bt601,format=yuv444p -c:v ffv1 ",
        "c.mkv");
    row("red, green and blue", "-c:v libx264rgb -crf 5 -pix_fmt rgb24 ", "c.mkv");
    row("motion JPEG",
        "-vf scale=out_range=full:out_color_matrix=bt601,format=yuvj420p -c:v mjpeg -q:v 2 ",
        "c.avi");
    row("one picture", "-frames:v 1 ", "c.png");
}

void TestStillImage::keepsColours()
{
    QFETCH(const QString, options);
    QFETCH(const QString, file);
    QVERIFY(
        makeMedia(u"-f lavfi -i color=0x3070c0:s=320x180:d=0.2,format=rgb24 "_s + options + file,
                  m_folder.path()));
    const QImage image = still(file);
    QVERIFY(!image.isNull());
    const QRgb seen = image.pixel(image.rect().center());
    QVERIFY2(isNear(seen, qRgb(0x30, 0x70, 0xc0), 6), qPrintable(nameOf(seen)));
}

void TestStillImage::isSmallerAtALowerQuality()
{
    QVERIFY(makeMedia(u"-f lavfi -i testsrc2=d=0.2 -c:v ffv1 detail.mkv"_s, m_folder.path()));
    const std::string file = path(u"detail.mkv"_s).toStdString();
    std::size_t previous = 0;
    for (const double quality : {-1.0, 0.4, 0.7, 1.0}) {
        const auto bytes = mediaTools().still(file, 0, 800, 800, quality);
        QVERIFY(bytes);
        QVERIFY2(bytes->size() > previous, qPrintable(QString::number(bytes->size())));
        previous = bytes->size();
    }
    QVERIFY(!mediaTools().still(file, 0, 0, 800, 0.7));
    QVERIFY(!mediaTools().still(file, -1, 800, 800, 0.7));
}

void TestStillImage::isNotTakenFromWhatHasNoPictures_data()
{
    QTest::addColumn<QString>("file");
    QVERIFY(makeMedia(u"-f lavfi -i color=red:s=64x64 -frames:v 1 cover.png"_s, m_folder.path()));
    QVERIFY(makeMedia(u"-f lavfi -i sine=d=2 -i cover.png -map 0 -c:a aac sound.m4a"
                      " -map 0 -map 1 -c:v copy -disposition:v attached_pic covered.m4a"
                      " -map 0 -map 1 -c:v copy -c:a libmp3lame covered.mp3"_s,
                      m_folder.path()));
    QVERIFY(writeFile(path(u"words.mp4"_s), "no media at all\n"));
    QVERIFY(writeFile(path(u"empty.mp4"_s), {}));
    QVERIFY(writeFile(path(u"script.mp4"_s), "ffconcat version 1.0\nfile h264.ts\n"));
    QVERIFY(writeFile(path(u"list.mp4"_s), "#EXTM3U\n#EXTINF:1,\nh264.ts\n#EXT-X-ENDLIST\n"));
    // The width and height of a PNG stand at 16, with the highest byte first: 8193 by 8192.
    QByteArray content = contentOf(path(u"cover.png"_s));
    QVERIFY(writeFile(path(u"huge.png"_s),
                      content.replace(16, 8, QByteArray::fromHex("0000200100002000"))));
    for (const char *file : {"sound.m4a", "covered.m4a", "covered.mp3", "words.mp4", "empty.mp4",
                             "script.mp4", "list.mp4", "huge.png", "missing.mp4", "."}) {
        QTest::newRow(file) << QString::fromLatin1(file);
    }
}

void TestStillImage::isNotTakenFromWhatHasNoPictures()
{
    QFETCH(const QString, file);
    QVERIFY(!mediaTools().still(path(file).toStdString(), 1.0, 800, 800, 0.7));
}

void TestStillImage::comesFromWhatIsLeftOfADamagedFile()
{
    QVERIFY(makeMedia(u"-i h264.mp4 -c copy -movflags +faststart cut.mp4"_s, m_folder.path()));
    const QByteArray whole = contentOf(path(u"cut.mp4"_s));
    const qsizetype media = whole.indexOf("mdat");
    QVERIFY(writeFile(path(u"cut.mp4"_s), whole.left(media + (whole.size() - media) / 4)));
    const QImage image = still(u"cut.mp4"_s);
    QVERIFY(isNear(image.pixel(9, 9), red));

    QVERIFY(writeFile(path(u"cut.mp4"_s), whole.left(media + 8)));
    QVERIFY(still(u"cut.mp4"_s).isNull());
}

QTEST_GUILESS_MAIN(TestStillImage)
#include "tst_still_image.moc"
