// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/platform/ffmpeg/stock_tool.h"
#include "tests/ui/display/private_display.h"
#include "tests/ui/player/silent_machine.h"
#include "ui/design/appearance.h"
#include "ui/player/video_player.h"

#include <QFile>
#include <QGuiApplication>
#include <QQmlComponent>
#include <QQmlEngine>
#include <QQuickItem>
#include <QQuickWindow>
#include <QRegularExpression>
#include <QSGRendererInterface>
#include <QScreen>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

#include <array>
#include <atomic>
#include <memory>

using namespace Qt::StringLiterals;
using veltro::ffmpeg::makeMedia;
using veltro::player::VideoPlayer;
using Status = VideoPlayer::Status;

namespace {

constexpr int patience = 30'000;
#define TRY(condition) QTRY_VERIFY_WITH_TIMEOUT(condition, patience)

// The player beside something that is drawn by blending, over and after it.
constexpr char scene[] = R"(
import QtQuick
import Veltro.Player
Rectangle {
    color: "white"
    MacVideoPlayer {
        objectName: "player"
        width: 320
        height: 180
        url: ""
        focus: true
    }
    Rectangle { x: 320; width: 80; height: 180; color: "#80ff0000" }
    Rectangle { x: 300; width: 20; height: 20; color: "#800000ff" }
}
)";

struct Bar {
    const char *name;
    QColor colour;
};
constexpr int barWidth = 80;
const std::array bars{
    Bar{"0xE02020", QColor(0xE0, 0x20, 0x20)}, Bar{"0x20C040", QColor(0x20, 0xC0, 0x40)},
    Bar{"0x3040D0", QColor(0x30, 0x40, 0xD0)}, Bar{"0xE0E0E0", QColor(0xE0, 0xE0, 0xE0)}};

// What comes and goes by the way from RGB to a film and back.
bool looksLike(QColor shown, QColor meant)
{
    constexpr int tolerance = 14;
    return qAbs(shown.red() - meant.red()) < tolerance &&
           qAbs(shown.green() - meant.green()) < tolerance &&
           qAbs(shown.blue() - meant.blue()) < tolerance;
}

/// How many frames a window has shown since. The thread that draws counts.
class ShownFrames {
public:
    explicit ShownFrames(QQuickWindow *window)
    {
        QObject::connect(
            window, &QQuickWindow::frameSwapped, window, [count = m_count] { ++*count; },
            Qt::DirectConnection);
    }

    [[nodiscard]] int count() const { return *m_count; }

private:
    const std::shared_ptr<std::atomic<int>> m_count = std::make_shared<std::atomic<int>>(0);
};

}

/// The player with its controls in a window that OpenGL draws, on a display of its own.
class PlayerWindowTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void cleanup();

    void itsColoursAreThoseOfTheFileAndTheSceneKeepsItsOwn();
    void itFillsTheScreenUntilEscape();
    void keysPlayAndSeekAndSetTheVolume();
    void theLastOfFiftyFilesIsTheOneThatIsShown();
    void windowsMayGoAtAnyMoment();
    void whatHasNoPictureShowsThatItPlays();

private:
    void openWindow();
    void play(const char *file);
    [[nodiscard]] QQuickItem *item() const
    {
        return m_window->findChild<QQuickItem *>(u"player"_s);
    }
    /// What the display shows of the window, and not only what the scene graph says it would.
    [[nodiscard]] QImage shown() const
    {
        const QRect area(m_window->mapToGlobal(QPoint()), m_window->size());
        return m_window->screen()->grabWindow(0).toImage().copy(area);
    }
    [[nodiscard]] bool showsBars(QRect area) const;

    QTemporaryDir m_folder;
    QQmlEngine m_engine;
    std::unique_ptr<QQuickWindow> m_window;
    QPointer<VideoPlayer> m_player; // in the window
};

void PlayerWindowTest::initTestCase()
{
    veltro::applyAppearance();
    m_engine.addImportPath(u":/qt/qml"_s);
    const QString h264 = u"-c:v libx264 -preset ultrafast -pix_fmt yuv420p "_s;
    QString colours;
    for (const Bar &bar : bars) {
        colours += u"-f lavfi -i color=%1:size=%2x180:rate=25:duration=30 "_s.arg(
            QLatin1String(bar.name), QString::number(barWidth));
    }
    QVERIFY(makeMedia(u"-y "_s + colours + u"-filter_complex hstack=4 "_s + h264 + u"bars.mp4"_s,
                      m_folder.path()));
    QVERIFY(makeMedia(u"-y -f lavfi -i testsrc2=size=320x180:rate=25:duration=30 "_s + h264 +
                          u"moving.mp4"_s,
                      m_folder.path()));
    QVERIFY(makeMedia(u"-y -f lavfi -i sine=duration=30 sound.m4a"_s, m_folder.path()));
}

void PlayerWindowTest::init()
{
    QTest::failOnWarning(QRegularExpression(u".*"_s));
    openWindow();
}

void PlayerWindowTest::cleanup()
{
    m_window.reset();
    QVERIFY(!m_player);
}

void PlayerWindowTest::openWindow()
{
    m_window = std::make_unique<QQuickWindow>();
    m_window->setGeometry(100, 100, 400, 180);
    QQmlComponent component(&m_engine);
    component.setData(scene, QUrl());
    auto *root = qobject_cast<QQuickItem *>(component.create());
    QVERIFY2(root, qPrintable(component.errorString()));
    root->setParent(m_window->contentItem());
    root->setParentItem(m_window->contentItem());
    root->setSize(m_window->size());
    m_player = item()->property("player").value<VideoPlayer *>();
    m_window->show();
    m_window->requestActivate();
    QVERIFY(QTest::qWaitForWindowActive(m_window.get()));
    QCOMPARE(m_window->rendererInterface()->graphicsApi(), QSGRendererInterface::OpenGL);
    item()->forceActiveFocus();
}

void PlayerWindowTest::play(const char *file)
{
    item()->setProperty("url", QUrl::fromLocalFile(m_folder.filePath(QString::fromLatin1(file))));
    TRY(m_player->status() == Status::Ready && m_player->positionSeconds() > 0.1);
}

bool PlayerWindowTest::showsBars(QRect area) const
{
    const QImage now = shown();
    for (std::size_t i = 0; i < bars.size(); ++i) {
        const int x = area.x() + (2 * int(i) + 1) * area.width() / (2 * int(bars.size()));
        for (const int y : {area.y() + area.height() / 8, area.center().y()}) {
            if (!looksLike(now.pixelColor(x, y), bars.at(i).colour)) {
                return false;
            }
        }
    }
    return true;
}

void PlayerWindowTest::itsColoursAreThoseOfTheFileAndTheSceneKeepsItsOwn()
{
    play("bars.mp4");
    // The controls lie over the lower part.
    TRY(showsBars({0, 0, 320, 120}));
    // Many frames later, too, and beside the picture as over it.
    const double position = m_player->positionSeconds();
    TRY(m_player->positionSeconds() > position + 1);
    QVERIFY(showsBars({0, 0, 320, 120}));
    const QImage now = shown();
    QVERIFY(looksLike(now.pixelColor(360, 90), QColor(255, 127, 127)));
    QVERIFY(looksLike(now.pixelColor(310, 10), QColor(0x70, 0x70, 0xF0)));
}

void PlayerWindowTest::itFillsTheScreenUntilEscape()
{
    play("bars.mp4");
    const QRect before = m_window->geometry();
    QTest::mouseDClick(m_window.get(), Qt::LeftButton, {}, {160, 60});
    QTRY_COMPARE_WITH_TIMEOUT(m_window->size(), m_window->screen()->size(), patience);
    QVERIFY(item()->property("fullScreen").toBool());
    // All of the picture in the middle, at the size of the screen: 1366 by 768.
    TRY(showsBars({0, 0, 1366, 600}));
    QTest::keyClick(m_window.get(), Qt::Key_Escape);
    QTRY_COMPARE_WITH_TIMEOUT(m_window->geometry(), before, patience);
    QVERIFY(!item()->property("fullScreen").toBool());
    TRY(showsBars({0, 0, 320, 120}));
    QCOMPARE(m_player->status(), Status::Ready);
    QVERIFY(!m_player->isPaused());
    // Escape is for others when there is nothing to leave; the window's own end of it counts, too.
    QVERIFY(QMetaObject::invokeMethod(item(), "toggleFullScreen"));
    QTRY_COMPARE_WITH_TIMEOUT(m_window->size(), m_window->screen()->size(), patience);
    m_window->showNormal();
    TRY(!item()->property("fullScreen").toBool());
}

void PlayerWindowTest::keysPlayAndSeekAndSetTheVolume()
{
    play("bars.mp4");
    QTest::keyClick(m_window.get(), Qt::Key_Space);
    TRY(m_player->isPaused());
    const double position = m_player->positionSeconds();
    QTest::keyClick(m_window.get(), Qt::Key_Right);
    QTest::keyClick(m_window.get(), Qt::Key_Right);
    TRY(!m_player->isSeeking());
    QVERIFY(qAbs(m_player->positionSeconds() - position - 10) < 0.2);
    QTest::keyClick(m_window.get(), Qt::Key_Left);
    TRY(!m_player->isSeeking());
    QVERIFY(qAbs(m_player->positionSeconds() - position - 5) < 0.2);
    QTest::keyClick(m_window.get(), Qt::Key_Space);
    TRY(m_player->positionSeconds() > position + 5.5);

    QSignalSpy chosen(item(), SIGNAL(volumeChosen(double, bool)));
    QTest::keyClick(m_window.get(), Qt::Key_Down);
    QCOMPARE(chosen.size(), 1);
    QCOMPARE(chosen[0][0].toDouble(), 0.95);
}

void PlayerWindowTest::theLastOfFiftyFilesIsTheOneThatIsShown()
{
    constexpr std::array files{"moving.mp4", "sound.m4a", "bars.mp4", "nothing-here.mp4",
                               "moving.mp4"};
    for (int i = 0; i < 50; ++i) {
        item()->setProperty("url", QUrl::fromLocalFile(m_folder.filePath(QString::fromLatin1(
                                       files.at(std::size_t(i) % files.size())))));
        // Some get as far as their first picture.
        const ShownFrames frames(m_window.get());
        static_cast<void>(QTest::qWaitFor([&] { return frames.count() > 0; }, i % 3 * 20));
    }
    play("bars.mp4");
    TRY(showsBars({0, 0, 320, 120}));
}

void PlayerWindowTest::windowsMayGoAtAnyMoment()
{
    for (int fewest = 0; fewest < 8; ++fewest) {
        item()->setProperty("url", QUrl::fromLocalFile(m_folder.filePath(u"moving.mp4"_s)));
        const ShownFrames frames(m_window.get());
        TRY(frames.count() >= fewest);
        m_window.reset();
        openWindow();
    }
    play("moving.mp4");
    m_window.reset();
    openWindow();
    play("bars.mp4");
    TRY(showsBars({0, 0, 320, 120}));
}

void PlayerWindowTest::whatHasNoPictureShowsThatItPlays()
{
    play("sound.m4a");
    TRY(m_player->positionSeconds() > 0.5);
    QCOMPARE(m_player->videoSize(), QSize(0, 0));
    // A sign in the middle of a black ground.
    TRY(shown().pixelColor(20, 20) == QColor(Qt::black));
    const auto hasASign = [this] {
        const QImage middle = shown().copy(140, 70, 40, 40);
        QImage black(middle.size(), middle.format());
        black.fill(Qt::black);
        return middle != black;
    };
    TRY(hasASign());
}

int main(int argc, char **argv)
{
    veltro::takeSoundAway();
    const veltro::PrivateDisplay display;
    const QGuiApplication application(argc, argv);
    PlayerWindowTest test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_player_window.moc"
