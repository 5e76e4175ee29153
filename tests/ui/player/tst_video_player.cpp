// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/platform/ffmpeg/stock_tool.h"
#include "tests/ui/display/private_display.h"
#include "tests/ui/player/silent_machine.h"
#include "ui/player/player_texts.h"
#include "ui/player/video_player.h"

#include <QElapsedTimer>
#include <QFile>
#include <QGuiApplication>
#include <QImage>
#include <QQuickWindow>
#include <QRegularExpression>
#include <QSGRendererInterface>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

#include <cmath>
#include <limits>
#include <memory>
#include <sys/stat.h>

using veltro::ffmpeg::makeMedia;
using veltro::ffmpeg::writeFile;
using veltro::player::VideoPlayer;
using Status = VideoPlayer::Status;

namespace {

constexpr int playTimeout = 30'000;
constexpr QSize windowSize(320, 180);

// With this in the environment all is done in windows of a display, drawn by OpenGL.
bool isOnADisplay()
{
    return qEnvironmentVariableIsSet("VELTRO_TEST_ON_DISPLAY");
}

}

/// The player in a window that nobody sees or in a real one, and with no sound device.
class VideoPlayerTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void cleanup();

    void playsAtOnceAndShowsMovingPictures();
    void drawsItsPicturesWholeAndOpaque();
    void playsEveryKindOfFile_data();
    void playsEveryKindOfFile();
    void startsAgainWithEachOtherFile();
    void playsTheLastOfManyFilesChosenInARow();
    void theSameFileChangesNothing();
    void pausesSeeksAndBeginsAgainAtTheEnd();
    void takesSeeksThatComeTooFastTogether();
    void keepsVolumeAndSilenceAcrossFiles();
    void saysPlainlyWhyAFileDoesNotPlay_data();
    void saysPlainlyWhyAFileDoesNotPlay();
    void playsOnAfterAFailure();
    void readsNothingThatAFileNames_data();
    void readsNothingThatAFileNames();
    void outlivesAFileThatVanishesAndOneThatIsCut();
    void endsWhileLoading();
    void movesToAnotherWindow();
    void neverHoldsTheMainThread();
    void writesTimesAsClocksDo_data();
    void writesTimesAsClocksDo();

private:
    [[nodiscard]] QUrl media(const QString &name) const
    {
        return QUrl::fromLocalFile(m_folder.filePath(name));
    }
    [[nodiscard]] bool play(const QString &name);
    [[nodiscard]] QImage shown() { return m_window->grabWindow(); }

    QTemporaryDir m_folder;
    std::unique_ptr<QQuickWindow> m_window;
    VideoPlayer *m_player = nullptr; // a child of the window's content
};

void VideoPlayerTest::initTestCase()
{
    QVERIFY(m_folder.isValid());
    const QString pictures =
        QStringLiteral("-f lavfi -i testsrc2=size=320x180:rate=25:duration=4 ");
    const QString sound = QStringLiteral("-f lavfi -i sine=frequency=440:duration=4 ");
    const QString h264 = QStringLiteral("-c:v libx264 -preset ultrafast -pix_fmt yuv420p ");
    const auto make = [&](const QString &command) {
        return makeMedia(QStringLiteral("-y ") + command, m_folder.path());
    };
    QVERIFY(make(pictures + sound + h264 + QStringLiteral("-c:a aac both.mp4")));
    QVERIFY(
        make(pictures + QStringLiteral("-c:v libvpx -deadline realtime -cpu-used 8 video.webm")));
    QVERIFY(make(sound + QStringLiteral("-c:a aac sound.m4a")));
    QVERIFY(make(sound + QStringLiteral("-c:a libmp3lame sound.mp3")));
    QVERIFY(make(QStringLiteral("-f lavfi -i color=red:size=320x180:rate=25:duration=4 ") + h264 +
                 QStringLiteral("red.mp4")));
    QVERIFY(make(QStringLiteral("-f lavfi -i color=blue:size=180x180:rate=25:duration=1 ") + h264 +
                 QStringLiteral("blue.mp4")));
    QVERIFY(QFile::copy(m_folder.filePath(QStringLiteral("both.mp4")),
                        m_folder.filePath(QStringLiteral("misnamed.webm"))));
}

void VideoPlayerTest::init()
{
    QTest::failOnWarning(QRegularExpression(QStringLiteral(".*")));
    m_window = std::make_unique<QQuickWindow>();
    m_window->setColor(Qt::white);
    m_window->resize(windowSize);
    m_player = new VideoPlayer(m_window->contentItem());
    m_player->setSize(windowSize);
    m_window->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_window.get()));
    QCOMPARE(m_window->rendererInterface()->graphicsApi() == QSGRendererInterface::OpenGL,
             isOnADisplay());
}

void VideoPlayerTest::cleanup()
{
    m_player = nullptr;
    m_window.reset();
}

bool VideoPlayerTest::play(const QString &name)
{
    m_player->setUrl(media(name));
    return QTest::qWaitFor(
        [&] { return m_player->status() == Status::Ready && m_player->positionSeconds() > 0.1; },
        playTimeout);
}

void VideoPlayerTest::playsAtOnceAndShowsMovingPictures()
{
    QCOMPARE(m_player->status(), Status::Empty);
    QVERIFY(play(QStringLiteral("both.mp4")));
    QVERIFY(!m_player->isPaused());
    QTRY_COMPARE_WITH_TIMEOUT(m_player->videoSize(), QSize(320, 180), playTimeout);
    QVERIFY(std::abs(m_player->durationSeconds() - 4) < 0.2);

    const double position = m_player->positionSeconds();
    const QImage before = shown();
    QTRY_VERIFY_WITH_TIMEOUT(m_player->positionSeconds() > position + 0.2, playTimeout);
    QTRY_VERIFY_WITH_TIMEOUT(shown() != before, playTimeout);
}

void VideoPlayerTest::drawsItsPicturesWholeAndOpaque()
{
    QVERIFY(play(QStringLiteral("red.mp4")));
    const auto isRed = [](QRgb pixel) {
        return qRed(pixel) > 200 && qGreen(pixel) < 40 && qBlue(pixel) < 40;
    };
    QTRY_VERIFY_WITH_TIMEOUT(isRed(shown().pixel(160, 90)), playTimeout);
    const QImage whole = shown();
    QVERIFY(isRed(whole.pixel(2, 2)));
    QVERIFY(isRed(whole.pixel(317, 177)));

    // A square picture stands in the middle, on black.
    QVERIFY(play(QStringLiteral("blue.mp4")));
    QTRY_VERIFY_WITH_TIMEOUT(qBlue(shown().pixel(160, 90)) > 200, playTimeout);
    QCOMPARE(shown().pixel(10, 90), qRgb(0, 0, 0));
}

void VideoPlayerTest::playsEveryKindOfFile_data()
{
    QTest::addColumn<QString>("file");
    QTest::addColumn<bool>("hasPicture");
    QTest::newRow("picture without sound, VP8") << "video.webm" << true;
    QTest::newRow("sound in mp4") << "sound.m4a" << false;
    QTest::newRow("mp3") << "sound.mp3" << false;
    QTest::newRow("a wrong ending") << "misnamed.webm" << true;
}

void VideoPlayerTest::playsEveryKindOfFile()
{
    QFETCH(QString, file);
    QFETCH(bool, hasPicture);
    QVERIFY(play(file));
    QTRY_COMPARE_WITH_TIMEOUT(!m_player->videoSize().isEmpty(), hasPicture, playTimeout);
}

void VideoPlayerTest::startsAgainWithEachOtherFile()
{
    QVERIFY(play(QStringLiteral("red.mp4")));
    m_player->pause();
    QTRY_VERIFY_WITH_TIMEOUT(m_player->isPaused(), playTimeout);
    QVERIFY(play(QStringLiteral("sound.mp3")));
    QVERIFY(!m_player->isPaused());
    QVERIFY(m_player->videoSize().isEmpty());
    QVERIFY(play(QStringLiteral("video.webm")));
    m_player->setUrl({});
    QCOMPARE(m_player->status(), Status::Empty);
    QCOMPARE(m_player->positionSeconds(), 0.0);
}

void VideoPlayerTest::playsTheLastOfManyFilesChosenInARow()
{
    for (int i = 0; i < 10; ++i) {
        m_player->setUrl(media(QStringLiteral("both.mp4")));
        m_player->setUrl(media(QStringLiteral("nothing-here.mp4")));
        m_player->setUrl(media(QStringLiteral("sound.mp3")));
        QCoreApplication::processEvents();
    }
    QVERIFY(play(QStringLiteral("red.mp4")));
    QCOMPARE(m_player->videoSize(), QSize(320, 180));
}

void VideoPlayerTest::theSameFileChangesNothing()
{
    QVERIFY(play(QStringLiteral("both.mp4")));
    QSignalSpy statusChanges(m_player, &VideoPlayer::statusChanged);
    const double position = m_player->positionSeconds();
    m_player->setUrl(media(QStringLiteral("both.mp4")));
    QVERIFY(m_player->positionSeconds() >= position);
    QTRY_VERIFY_WITH_TIMEOUT(m_player->positionSeconds() > position, playTimeout);
    QVERIFY(statusChanges.isEmpty());
}

void VideoPlayerTest::pausesSeeksAndBeginsAgainAtTheEnd()
{
    QVERIFY(play(QStringLiteral("both.mp4")));
    m_player->togglePlaying();
    QTRY_VERIFY_WITH_TIMEOUT(m_player->isPaused(), playTimeout);

    m_player->seek(2.5);
    QTRY_VERIFY_WITH_TIMEOUT(!m_player->isSeeking(), playTimeout);
    QTRY_VERIFY_WITH_TIMEOUT(std::abs(m_player->positionSeconds() - 2.5) < 0.1, playTimeout);
    QVERIFY(m_player->isPaused());

    m_player->seekBy(1000);
    QCOMPARE(m_player->positionSeconds(), m_player->durationSeconds());
    m_player->togglePlaying();
    QTRY_VERIFY_WITH_TIMEOUT(m_player->isAtEnd(), playTimeout);

    m_player->togglePlaying();
    QTRY_VERIFY_WITH_TIMEOUT(!m_player->isAtEnd() && !m_player->isPaused() &&
                                 m_player->positionSeconds() < 2,
                             playTimeout);
}

void VideoPlayerTest::takesSeeksThatComeTooFastTogether()
{
    QVERIFY(play(QStringLiteral("both.mp4")));
    m_player->pause();
    QTRY_VERIFY_WITH_TIMEOUT(m_player->isPaused(), playTimeout);
    for (int i = 1; i <= 300; ++i) {
        m_player->seek(i / 100.0);
    }
    QTRY_VERIFY_WITH_TIMEOUT(!m_player->isSeeking(), playTimeout);
    QTRY_VERIFY_WITH_TIMEOUT(std::abs(m_player->positionSeconds() - 3) < 0.1, playTimeout);
    m_player->seek(std::numeric_limits<double>::quiet_NaN());
    QVERIFY(!m_player->isSeeking());
}

void VideoPlayerTest::keepsVolumeAndSilenceAcrossFiles()
{
    m_player->setVolume(0.25);
    m_player->setMuted(true);
    QVERIFY(play(QStringLiteral("sound.mp3")));
    QVERIFY(play(QStringLiteral("both.mp4")));
    QCOMPARE(m_player->volume(), 0.25);
    QVERIFY(m_player->isMuted());
    m_player->setVolume(7);
    QCOMPARE(m_player->volume(), 1.0);
    m_player->setVolume(-1);
    QCOMPARE(m_player->volume(), 0.0);
}

void VideoPlayerTest::saysPlainlyWhyAFileDoesNotPlay_data()
{
    QTest::addColumn<QUrl>("url");
    QTest::addColumn<QString>("text");
    const auto file = [this](const char *name, const QByteArray &content) {
        const QString path = m_folder.filePath(QString::fromLatin1(name));
        return writeFile(path, content) ? QUrl::fromLocalFile(path) : QUrl();
    };
    const QString cannot = QStringLiteral("This file cannot be played.");
    const QString unreadable = QStringLiteral("The file cannot be read.");
    QTest::newRow("no such file") << media(QStringLiteral("gone.mp4"))
                                  << QStringLiteral("The file is no longer there.");
    QTest::newRow("a folder") << QUrl::fromLocalFile(m_folder.path()) << unreadable;
    const QString pipe = m_folder.filePath(QStringLiteral("pipe.mp4"));
    QCOMPARE(::mkfifo(QFile::encodeName(pipe).constData(), 0600), 0);
    QTest::newRow("a pipe that nobody writes") << QUrl::fromLocalFile(pipe) << unreadable;
    QTest::newRow("nothing in it") << file("empty.mp4", {}) << cannot;
    QTest::newRow("no media") << file("noise.mp4", QByteArray(5000, 'x')) << cannot;
    QTest::newRow("a page") << file("page.mp4", "<html><body>Sign in</body></html>") << cannot;
    QTest::newRow("an address") << QUrl(QStringLiteral("http://127.0.0.1:9/a.mp4")) << cannot;
    QFile whole(m_folder.filePath(QStringLiteral("both.mp4")));
    QVERIFY(whole.open(QIODevice::ReadOnly));
    QTest::newRow("only the beginning") << file("short.mp4", whole.read(2000)) << cannot;
}

void VideoPlayerTest::saysPlainlyWhyAFileDoesNotPlay()
{
    QFETCH(QUrl, url);
    QFETCH(QString, text);
    m_player->setUrl(url);
    QTRY_COMPARE_WITH_TIMEOUT(m_player->status(), Status::Failed, playTimeout);
    QCOMPARE(m_player->errorText(), text);
    QCOMPARE(m_player->durationSeconds(), 0.0);
}

void VideoPlayerTest::playsOnAfterAFailure()
{
    m_player->setUrl(media(QStringLiteral("gone.mp4")));
    QTRY_COMPARE_WITH_TIMEOUT(m_player->status(), Status::Failed, playTimeout);
    QVERIFY(play(QStringLiteral("both.mp4")));
    QVERIFY(m_player->errorText().isEmpty());
    m_player->setUrl(media(QStringLiteral("noise.mp4")));
    QTRY_COMPARE_WITH_TIMEOUT(m_player->status(), Status::Failed, playTimeout);
}

void VideoPlayerTest::readsNothingThatAFileNames_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QByteArray>("content");
    const QByteArray other = QFile::encodeName(m_folder.filePath(QStringLiteral("both.mp4")));
    QTest::newRow("a playlist") << "list.mp4"
                                << "#EXTM3U\n#EXTINF:4,x\n" + other + "\n";
    QTest::newRow("a playlist by its ending") << "list.m3u8"
                                              << "#EXTM3U\n" + other + "\n";
    QTest::newRow("segments") << "segments.mp4"
                              << "#EXTM3U\n#EXT-X-TARGETDURATION:4\n#EXTINF:4,\n" + other +
                                     "\n#EXT-X-ENDLIST\n";
    QTest::newRow("a concat script") << "concat.mp4"
                                     << "ffconcat version 1.0\nfile '" + other + "'\n";
    QTest::newRow("an edit list") << "edit.mp4"
                                  << "# mpv EDL v0\n" + other + ",0,2\n";
    QTest::newRow("a cue sheet") << "sheet.cue"
                                 << "FILE \"" + other +
                                        "\" WAVE\n  TRACK 01 AUDIO\n    INDEX 01 00:00:00\n";
    QTest::newRow("a list of files") << "list.pls"
                                     << "[playlist]\nFile1=" + other + "\nNumberOfEntries=1\n";
    QTest::newRow("a session") << "session.mp4"
                               << QByteArray(
                                      "v=0\r\no=- 0 0 IN IP4 127.0.0.1\r\ns=x\r\n"
                                      "c=IN IP4 127.0.0.1\r\nt=0 0\r\nm=video 5004 RTP/AVP 96\r\n"
                                      "a=rtpmap:96 H264/90000\r\n");
}

void VideoPlayerTest::readsNothingThatAFileNames()
{
    QFETCH(QString, name);
    QFETCH(QByteArray, content);
    QVERIFY(writeFile(m_folder.filePath(name), content));
    m_player->setUrl(media(name));
    QTRY_COMPARE_WITH_TIMEOUT(m_player->status(), Status::Failed, playTimeout);
    QCOMPARE(m_player->errorText(), QStringLiteral("This file cannot be played."));
}

void VideoPlayerTest::outlivesAFileThatVanishesAndOneThatIsCut()
{
    const auto copy = [this](const QString &name) {
        return QFile::copy(m_folder.filePath(QStringLiteral("both.mp4")), m_folder.filePath(name));
    };
    QVERIFY(copy(QStringLiteral("vanishing.mp4")));
    QVERIFY(play(QStringLiteral("vanishing.mp4")));
    QVERIFY(QFile::remove(m_folder.filePath(QStringLiteral("vanishing.mp4"))));
    QTRY_VERIFY_WITH_TIMEOUT(m_player->isAtEnd(), playTimeout);

    QVERIFY(copy(QStringLiteral("cut.mp4")));
    QVERIFY(play(QStringLiteral("cut.mp4")));
    QVERIFY(QFile::resize(m_folder.filePath(QStringLiteral("cut.mp4")), 3000));
    QTRY_VERIFY_WITH_TIMEOUT(m_player->isAtEnd() || m_player->status() == Status::Failed,
                             playTimeout);
    QVERIFY(play(QStringLiteral("red.mp4")));
}

void VideoPlayerTest::endsWhileLoading()
{
    // At each stage: not begun, begun, with a picture under way.
    for (int rounds = 0; rounds < 12; ++rounds) {
        auto *player = new VideoPlayer(m_window->contentItem());
        player->setSize(windowSize);
        player->setUrl(media(QStringLiteral("both.mp4")));
        for (int i = 0; i < rounds * 3; ++i) {
            QCoreApplication::processEvents(QEventLoop::AllEvents);
        }
        delete player;
    }
    QVERIFY(play(QStringLiteral("both.mp4")));
}

void VideoPlayerTest::movesToAnotherWindow()
{
    QVERIFY(play(QStringLiteral("both.mp4")));
    QQuickWindow other;
    other.resize(windowSize);
    other.show();
    QVERIFY(QTest::qWaitForWindowExposed(&other));
    m_player->setParentItem(other.contentItem());
    const auto shownThere = [&] { return other.grabWindow(); };
    QTRY_VERIFY_WITH_TIMEOUT(shownThere().pixelColor(160, 90) != QColor(Qt::white), playTimeout);
    const QImage before = shownThere();
    QTRY_VERIFY_WITH_TIMEOUT(shownThere() != before, playTimeout);
    m_player->setParentItem(m_window->contentItem());
}

void VideoPlayerTest::neverHoldsTheMainThread()
{
    // What the main thread does for the player, measured as the longest single call.
    qint64 longest = 0;
    QElapsedTimer timer;
    const auto measured = [&](auto call) {
        timer.start();
        call();
        longest = std::max(longest, timer.elapsed());
    };
    for (int i = 0; i < 5; ++i) {
        measured([&] { m_player->setUrl(media(QStringLiteral("both.mp4"))); });
        QTRY_VERIFY_WITH_TIMEOUT(m_player->positionSeconds() > 0.1, playTimeout);
        measured([&] { m_player->seek(3); });
        measured([&] { m_player->pause(); });
        measured([&] { m_player->setVolume(0.1 * i); });
        measured([&] { m_player->setUrl(media(QStringLiteral("video.webm"))); });
        QTRY_VERIFY_WITH_TIMEOUT(m_player->positionSeconds() > 0.1, playTimeout);
    }
    measured([&] { delete m_player; });
    // Far more than any of them takes, far less than starting, opening or ending a player takes.
    QVERIFY2(longest < 50, qPrintable(QString::number(longest)));
}

void VideoPlayerTest::writesTimesAsClocksDo_data()
{
    QTest::addColumn<double>("seconds");
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("spoken");
    QTest::newRow("0") << 0.0 << "0:00"
                       << "0 seconds";
    QTest::newRow("rounded down") << 59.99 << "0:59"
                                  << "59 seconds";
    QTest::newRow("a minute") << 61.0 << "1:01"
                              << "1 minute 1 second";
    QTest::newRow("under an hour") << 3599.9 << "59:59"
                                   << "59 minutes 59 seconds";
    QTest::newRow("an hour") << 3600.0 << "1:00:00"
                             << "1 hour";
    QTest::newRow("many hours") << 360'065.0 << "100:01:05"
                                << "100 hours 1 minute 5 seconds";
    QTest::newRow("before 0") << -3.0 << "0:00"
                              << "0 seconds";
    QTest::newRow("endless") << std::numeric_limits<double>::infinity() << ""
                             << "";
    QTest::newRow("no number") << std::numeric_limits<double>::quiet_NaN() << ""
                               << "";
}

void VideoPlayerTest::writesTimesAsClocksDo()
{
    QFETCH(double, seconds);
    QFETCH(QString, text);
    QFETCH(QString, spoken);
    QCOMPARE(veltro::player::durationText(seconds), text);
    QCOMPARE(veltro::player::spokenDuration(seconds), spoken);
}

int main(int argc, char **argv)
{
    veltro::takeSoundAway();
    std::unique_ptr<veltro::PrivateDisplay> display;
    if (isOnADisplay()) {
        display = std::make_unique<veltro::PrivateDisplay>();
    } else {
        qputenv("QT_QPA_PLATFORM", "offscreen");
    }
    // A locale that writes numbers with a comma, where it is installed.
    qputenv("LC_NUMERIC", "de_DE.UTF-8");
    const QGuiApplication application(argc, argv);
    VideoPlayerTest test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_video_player.moc"
