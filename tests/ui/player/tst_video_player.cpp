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
#include <QHash>
#include <QImage>
#include <QQuickWindow>
#include <QRegularExpression>
#include <QSGRendererInterface>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

#include <algorithm>
#include <cmath>
#include <limits>
#include <memory>
#include <sys/stat.h>

using namespace Qt::StringLiterals;
using veltro::ffmpeg::makeMedia;
using veltro::ffmpeg::writeFile;
using veltro::player::VideoPlayer;
using Status = VideoPlayer::Status;

namespace {

constexpr int playTimeout = 30'000;
constexpr QSize windowSize(320, 180);
#define TRY(condition) QTRY_VERIFY_WITH_TIMEOUT(condition, playTimeout)

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
    void startsAgainWithEachFileOfAnyKind();
    void theSameFileChangesNothing();
    void pausesSeeksAndBeginsAgainAtTheEnd();
    void takesSeeksThatComeTooFastTogether();
    void keepsVolumeAndSilenceAcrossFiles();
    void saysPlainlyWhyAFileDoesNotPlay_data();
    void saysPlainlyWhyAFileDoesNotPlay();
    void playsOnAfterAFailure();
    void outlivesAFileThatVanishesAndOneThatIsCut();
    void endsWhileLoading();
    void movesToAnotherWindow();
    void neverHoldsTheMainThread();
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
    const QString pictures = u"-f lavfi -i testsrc2=size=320x180:rate=25:duration=4 "_s;
    const QString sound = u"-f lavfi -i sine=frequency=440:duration=4 "_s;
    const QString h264 = u"-c:v libx264 -preset ultrafast -pix_fmt yuv420p "_s;
    const auto make = [&](const QString &command) {
        return makeMedia(u"-y "_s + command, m_folder.path());
    };
    QVERIFY(make(pictures + sound + h264 + u"-c:a aac both.mp4"_s));
    QVERIFY(make(pictures + u"-c:v libvpx -deadline realtime -cpu-used 8 video.webm"_s));
    QVERIFY(make(sound + u"-c:a aac sound.m4a"_s));
    QVERIFY(make(sound + u"-c:a libmp3lame sound.mp3"_s));
    QVERIFY(
        make(u"-f lavfi -i color=red:size=320x180:rate=25:duration=4 "_s + h264 + u"red.mp4"_s));
    QVERIFY(
        make(u"-f lavfi -i color=blue:size=180x180:rate=25:duration=1 "_s + h264 + u"blue.mp4"_s));
    QVERIFY(QFile::copy(m_folder.filePath(u"both.mp4"_s), m_folder.filePath(u"misnamed.webm"_s)));
}

void VideoPlayerTest::init()
{
    QTest::failOnWarning(QRegularExpression(u".*"_s));
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
    QVERIFY(play(u"both.mp4"_s));
    QVERIFY(!m_player->isPaused());
    QTRY_COMPARE_WITH_TIMEOUT(m_player->videoSize(), QSize(320, 180), playTimeout);
    QVERIFY(std::abs(m_player->durationSeconds() - 4) < 0.2);

    const double position = m_player->positionSeconds();
    const QImage before = shown();
    TRY(m_player->positionSeconds() > position + 0.2);
    TRY(shown() != before);
}

void VideoPlayerTest::drawsItsPicturesWholeAndOpaque()
{
    QVERIFY(play(u"red.mp4"_s));
    const auto isRed = [](QRgb pixel) {
        return qRed(pixel) > 200 && qGreen(pixel) < 40 && qBlue(pixel) < 40;
    };
    TRY(isRed(shown().pixel(160, 90)));
    const QImage whole = shown();
    QVERIFY(isRed(whole.pixel(2, 2)));
    QVERIFY(isRed(whole.pixel(317, 177)));

    // To the edges, too, where it would leave a pixel of them.
    m_player->setSize({270, 151});
    const auto isRedAtItsEdges = [&] {
        const QImage now = shown();
        return isRed(now.pixel(0, 80)) && isRed(now.pixel(269, 80)) && isRed(now.pixel(140, 0)) &&
               isRed(now.pixel(140, 150));
    };
    const double position = m_player->positionSeconds();
    TRY(m_player->positionSeconds() > position + 0.2); // a picture of the new size
    TRY(isRedAtItsEdges());
    m_player->setSize(windowSize);

    // A square picture stands in the middle, on black.
    QVERIFY(play(u"blue.mp4"_s));
    TRY(qBlue(shown().pixel(160, 90)) > 200);
    QCOMPARE(shown().pixel(10, 90), qRgb(0, 0, 0));
}

void VideoPlayerTest::startsAgainWithEachFileOfAnyKind()
{
    const std::vector<std::pair<QString, bool>> files{{u"red.mp4"_s, true},
                                                      {u"sound.mp3"_s, false},
                                                      {u"video.webm"_s, true}, // VP8, no sound
                                                      {u"sound.m4a"_s, false},
                                                      {u"misnamed.webm"_s, true}};
    for (const auto &[file, hasPicture] : files) {
        QVERIFY2(play(file), qPrintable(file));
        QVERIFY(!m_player->isPaused());
        QTRY_COMPARE_WITH_TIMEOUT(!m_player->videoSize().isEmpty(), hasPicture, playTimeout);
        m_player->pause();
        TRY(m_player->isPaused());
    }
    m_player->setUrl({});
    QCOMPARE(m_player->status(), Status::Empty);
    QCOMPARE(m_player->positionSeconds(), 0.0);
}

void VideoPlayerTest::theSameFileChangesNothing()
{
    QVERIFY(play(u"both.mp4"_s));
    QSignalSpy statusChanges(m_player, &VideoPlayer::statusChanged);
    const double position = m_player->positionSeconds();
    m_player->setUrl(media(u"both.mp4"_s));
    QVERIFY(m_player->positionSeconds() >= position);
    TRY(m_player->positionSeconds() > position);
    QVERIFY(statusChanges.isEmpty());
}

void VideoPlayerTest::pausesSeeksAndBeginsAgainAtTheEnd()
{
    QVERIFY(play(u"both.mp4"_s));
    m_player->togglePlaying();
    TRY(m_player->isPaused());

    m_player->seek(2.5);
    TRY(!m_player->isSeeking());
    TRY(std::abs(m_player->positionSeconds() - 2.5) < 0.1);
    QVERIFY(m_player->isPaused());

    m_player->seekBy(1000);
    QCOMPARE(m_player->positionSeconds(), m_player->durationSeconds());
    m_player->togglePlaying();
    TRY(m_player->isAtEnd());

    double least = m_player->positionSeconds();
    const QObject watch;
    connect(m_player, &VideoPlayer::positionChanged, &watch,
            [&] { least = std::min(least, m_player->positionSeconds()); });
    m_player->togglePlaying();
    TRY(least < 2);
    QVERIFY(!m_player->isPaused());
}

void VideoPlayerTest::takesSeeksThatComeTooFastTogether()
{
    QVERIFY(play(u"both.mp4"_s));
    m_player->pause();
    TRY(m_player->isPaused());
    for (int i = 1; i <= 300; ++i) {
        m_player->seek(i / 100.0);
    }
    TRY(!m_player->isSeeking());
    TRY(std::abs(m_player->positionSeconds() - 3) < 0.1);
    m_player->seek(std::numeric_limits<double>::quiet_NaN());
    QVERIFY(!m_player->isSeeking());
}

void VideoPlayerTest::keepsVolumeAndSilenceAcrossFiles()
{
    m_player->setVolume(0.25);
    m_player->setMuted(true);
    QVERIFY(play(u"sound.mp3"_s));
    QVERIFY(play(u"both.mp4"_s));
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
    const QString cannot = u"This file cannot be played."_s;
    const QString unreadable = u"The file cannot be read."_s;
    const auto row = [&](const char *why, const QString &name, const QByteArray &content) {
        QVERIFY(writeFile(m_folder.filePath(name), content));
        QTest::newRow(why) << media(name) << cannot;
    };
    QTest::newRow("no such file") << media(u"gone.mp4"_s) << u"The file is no longer there."_s;
    QTest::newRow("a folder") << QUrl::fromLocalFile(m_folder.path()) << unreadable;
    const QString pipe = m_folder.filePath(u"pipe.mp4"_s);
    QCOMPARE(::mkfifo(QFile::encodeName(pipe).constData(), 0600), 0);
    QTest::newRow("a pipe that nobody writes") << QUrl::fromLocalFile(pipe) << unreadable;
    QTest::newRow("an address") << QUrl(u"http://127.0.0.1:9/a.mp4"_s) << cannot;
    QFile whole(m_folder.filePath(u"both.mp4"_s));
    QVERIFY(whole.open(QIODevice::ReadOnly));
    row("only the beginning", u"short.mp4"_s, whole.read(2000));
    row("nothing in it", u"empty.mp4"_s, {});
    row("no media", u"noise.mp4"_s, QByteArray(5000, 'x'));
    row("a page", u"page.mp4"_s, "<html><body>Sign in</body></html>");

    // What a file names is not read for it.
    const QByteArray other = QFile::encodeName(whole.fileName());
    row("a playlist", u"list.mp4"_s, "#EXTM3U\n#EXTINF:4,x\n" + other + "\n");
    row("a playlist by its ending", u"list.m3u8"_s, "#EXTM3U\n" + other + "\n");
    row("segments", u"segments.mp4"_s,
        "#EXTM3U\n#EXT-X-TARGETDURATION:4\n#EXTINF:4,\n" + other + "\n#EXT-X-ENDLIST\n");
    row("a concat script", u"concat.mp4"_s, "ffconcat version 1.0\nfile '" + other + "'\n");
    row("an edit list", u"edit.mp4"_s, "# mpv EDL v0\n" + other + ",0,2\n");
    row("a cue sheet", u"sheet.cue"_s,
        "FILE \"" + other + "\" WAVE\n  TRACK 01 AUDIO\n    INDEX 01 00:00:00\n");
    row("a list of files", u"list.pls"_s, "[playlist]\nFile1=" + other + "\nNumberOfEntries=1\n");
    row("a session", u"session.mp4"_s,
        "v=0\r\no=- 0 0 IN IP4 127.0.0.1\r\ns=x\r\nc=IN IP4 127.0.0.1\r\nt=0 0\r\n"
        "m=video 5004 RTP/AVP 96\r\na=rtpmap:96 H264/90000\r\n");
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
    m_player->setUrl(media(u"gone.mp4"_s));
    QTRY_COMPARE_WITH_TIMEOUT(m_player->status(), Status::Failed, playTimeout);
    QVERIFY(play(u"both.mp4"_s));
    QVERIFY(m_player->errorText().isEmpty());
    m_player->setUrl(media(u"noise.mp4"_s));
    QTRY_COMPARE_WITH_TIMEOUT(m_player->status(), Status::Failed, playTimeout);
}

void VideoPlayerTest::outlivesAFileThatVanishesAndOneThatIsCut()
{
    const auto copy = [this](const QString &name) {
        return QFile::copy(m_folder.filePath(u"both.mp4"_s), m_folder.filePath(name));
    };
    QVERIFY(copy(u"vanishing.mp4"_s));
    QVERIFY(play(u"vanishing.mp4"_s));
    QVERIFY(QFile::remove(m_folder.filePath(u"vanishing.mp4"_s)));
    TRY(m_player->isAtEnd());

    QVERIFY(copy(u"cut.mp4"_s));
    QVERIFY(play(u"cut.mp4"_s));
    QVERIFY(QFile::resize(m_folder.filePath(u"cut.mp4"_s), 3000));
    TRY(m_player->isAtEnd() || m_player->status() == Status::Failed);
    QVERIFY(play(u"red.mp4"_s));
}

void VideoPlayerTest::endsWhileLoading()
{
    // At each stage: not begun, begun, with a picture under way.
    for (int rounds = 0; rounds < 12; ++rounds) {
        auto *player = new VideoPlayer(m_window->contentItem());
        player->setSize(windowSize);
        player->setUrl(media(u"both.mp4"_s));
        for (int i = 0; i < rounds * 3; ++i) {
            QCoreApplication::processEvents(QEventLoop::AllEvents);
        }
        delete player;
    }
    QVERIFY(play(u"both.mp4"_s));
}

void VideoPlayerTest::movesToAnotherWindow()
{
    QVERIFY(play(u"both.mp4"_s));
    QQuickWindow other;
    other.resize(windowSize);
    other.show();
    QVERIFY(QTest::qWaitForWindowExposed(&other));
    m_player->setParentItem(other.contentItem());
    const auto shownThere = [&] { return other.grabWindow(); };
    TRY(shownThere().pixelColor(160, 90) != QColor(Qt::white));
    const QImage before = shownThere();
    TRY(shownThere() != before);
    m_player->setParentItem(m_window->contentItem());
}

void VideoPlayerTest::neverHoldsTheMainThread()
{
    // A call that waits does so each time; one that is merely interrupted does not.
    QHash<QString, qint64> shortest; // ms, by call
    const auto measured = [&](const QString &name, auto call) {
        QElapsedTimer timer;
        timer.start();
        call();
        shortest[name] = std::min(shortest.value(name, timer.elapsed()), timer.elapsed());
    };
    for (int i = 0; i < 5; ++i) {
        auto *player = new VideoPlayer(m_window->contentItem());
        player->setSize(windowSize);
        measured(u"first file"_s, [&] { player->setUrl(media(u"both.mp4"_s)); });
        TRY(player->positionSeconds() > 0.1);
        measured(u"seek"_s, [&] { player->seek(3); });
        measured(u"pause"_s, [&] { player->pause(); });
        measured(u"volume"_s, [&] { player->setVolume(0.1 * i); });
        measured(u"next file"_s, [&] { player->setUrl(media(u"video.webm"_s)); });
        TRY(player->positionSeconds() > 0.1);
        measured(u"end"_s, [&] { delete player; });
    }
    // Far more than any of them takes, far less than starting, opening or ending a player takes.
    for (auto call = shortest.cbegin(); call != shortest.cend(); ++call) {
        QVERIFY2(call.value() < 50, qPrintable(call.key()));
    }
}

void VideoPlayerTest::writesTimesAsClocksDo()
{
    const auto texts = [](double seconds) {
        return veltro::player::durationText(seconds) + u", "_s +
               veltro::player::spokenDuration(seconds);
    };
    QCOMPARE(texts(0), u"0:00, 0 seconds"_s);
    QCOMPARE(texts(59.99), u"0:59, 59 seconds"_s);
    QCOMPARE(texts(61), u"1:01, 1 minute 1 second"_s);
    QCOMPARE(texts(3599.9), u"59:59, 59 minutes 59 seconds"_s);
    QCOMPARE(texts(3600), u"1:00:00, 1 hour"_s);
    QCOMPARE(texts(360'065), u"100:01:05, 100 hours 1 minute 5 seconds"_s);
    QCOMPARE(texts(-3), u"0:00, 0 seconds"_s);
    QCOMPARE(texts(std::numeric_limits<double>::infinity()), u", "_s);
    QCOMPARE(texts(std::nan("")), u", "_s);
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
