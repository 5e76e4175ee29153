// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
// The program itself on a small display and without a session bus, with the test site for the web.
#include "platform/defaults_store.h"
#include "tests/coordination/private_home.h"
#include "tests/site/test_site.h"
#include "tests/ui/display/private_display.h"
#include "ui/app/window_memory.h"

#include <QGuiApplication>
#include <QScreen>
#include <QTest>

#include <algorithm>
#include <utility>

namespace veltro {

class TestProgram : public QObject {
    Q_OBJECT
public:
    explicit TestProgram(const PrivateDisplay &display) : m_display(display) {}

private Q_SLOTS:
    void init();
    void cleanup();
    void itSavesALinkWithoutASessionBus();
    void itsWindowFitsASmallDisplay_data();
    void itsWindowFitsASmallDisplay();
    void closingAsksAndASecondStartGoesOnWithTheFile();

private:
    static constexpr int patience = 90'000;

    void startProgram();
    void typeLink(const QString &path);
    void key(const char *name)
    {
        m_display.act({QStringLiteral("key"), QString::fromLatin1(name)});
    }
    [[nodiscard]] QRect window() const { return m_display.placeOf(QStringLiteral("Veltro")); }
    [[nodiscard]] QRgb sidebarColour() const;
    /// Whether the window comes to rest under a question.
    [[nodiscard]] bool asks(QRgb plain) const;
    [[nodiscard]] QFileInfoList files(const char *pattern) const
    {
        return QDir(m_home->path(QStringLiteral("Documents/Downloads")))
            .entryInfoList({QString::fromLatin1(pattern)}, QDir::Files);
    }

    const PrivateDisplay &m_display;
    std::unique_ptr<PrivateHome> m_home;
    std::unique_ptr<TestSite> m_site;
    std::unique_ptr<QProcess> m_program;
};

void TestProgram::init()
{
    m_home = std::make_unique<PrivateHome>();
    m_home->write(QStringLiteral("run/here"), {});
    QVERIFY(QFile::setPermissions(m_home->path(QStringLiteral("run")),
                                  QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner));
    qputenv("XDG_RUNTIME_DIR", m_home->path(QStringLiteral("run")).toUtf8());
    qputenv("DBUS_SESSION_BUS_ADDRESS", "unix:path=/nonexistent");
    QVERIFY(QDir(m_home->path()).mkpath(QStringLiteral("Documents")));
    m_site = std::make_unique<TestSite>();
}

void TestProgram::cleanup()
{
    if (m_program) {
        m_program->kill();
        m_program->waitForFinished();
    }
    m_program.reset();
    m_site.reset();
    m_home.reset();
}

void TestProgram::startProgram()
{
    m_program = std::make_unique<QProcess>();
    m_program->setProcessChannelMode(QProcess::ForwardedErrorChannel);
    m_program->start(QCoreApplication::applicationDirPath() + QStringLiteral("/veltro"), {});
    QVERIFY(QTest::qWaitFor([this] { return !window().isEmpty(); }, patience));
}

void TestProgram::typeLink(const QString &path)
{
    m_display.act({QStringLiteral("search"), QStringLiteral("--onlyvisible"),
                   QStringLiteral("--name"), QStringLiteral("^Veltro$"),
                   QStringLiteral("windowactivate"), QStringLiteral("--sync"),
                   QStringLiteral("type"), m_site->url(path).toString()});
    key("Return");
}

// A place where nothing moves; darker under a question.
QRgb TestProgram::sidebarColour() const
{
    const QPoint place = window().topLeft() + QPoint(110, 400);
    return QGuiApplication::primaryScreen()
        ->grabWindow(0, place.x(), place.y(), 1, 1)
        .toImage()
        .pixel(0, 0);
}

bool TestProgram::asks(QRgb plain) const
{
    QRgb before = plain;
    return QTest::qWaitFor(
        [&] {
            const QRgb now = sidebarColour();
            return now != plain && std::exchange(before, now) == now;
        },
        patience);
}

void TestProgram::itSavesALinkWithoutASessionBus()
{
    const QString left = QStringLiteral("data/veltro/cookies/.being-written");
    m_home->write(left, "of an import that was killed");
    startProgram();
    QTRY_VERIFY_WITH_TIMEOUT(!QFile::exists(m_home->path(left)), patience);
    typeLink(QStringLiteral("/title/markup"));
    QTRY_COMPARE_WITH_TIMEOUT(files("*.mp4").size(), 1, patience);
    // A second start finds the first all the same.
    QProcess second;
    second.start(m_program->program(), {m_site->url(QStringLiteral("/plain")).toString()});
    QTRY_COMPARE_WITH_TIMEOUT(second.state(), QProcess::NotRunning, patience);
    QCOMPARE(second.exitCode(), 0);
    QTRY_COMPARE_WITH_TIMEOUT(m_site->requestCount(QStringLiteral("/plain")), 1, patience);
    QCOMPARE(m_program->state(), QProcess::Running);
}

void TestProgram::itsWindowFitsASmallDisplay_data()
{
    QTest::addColumn<QSize>("remembered");
    QTest::newRow("the first start") << QSize();
    QTest::newRow("remembered from a large one") << QSize(3800, 2100);
}

void TestProgram::itsWindowFitsASmallDisplay()
{
    QFETCH(QSize, remembered);
    if (!remembered.isEmpty()) {
        WindowMemory memory{DefaultsStore()};
        memory.setProperty("width", remembered.width());
        memory.setProperty("height", remembered.height());
        memory.save();
    }
    startProgram();
    const QRect screen(QPoint(), QGuiApplication::primaryScreen()->size());
    QCOMPARE(screen.size(), QSize(1366, 768));
    // With the frame, which the window manager draws above it.
    QRect place;
    const auto fits = [&] {
        place = window();
        return screen.contains(place) && place.top() > 0;
    };
    QVERIFY2(QTest::qWaitFor(fits, patience), qPrintable(QDebug::toString(place)));
    QVERIFY(place.width() >= 980 && place.height() >= 680);
}

void TestProgram::closingAsksAndASecondStartGoesOnWithTheFile()
{
    startProgram();
    typeLink(QStringLiteral("/held?at=1000000"));
    const auto partial = [this] {
        const QFileInfoList found = files("*.part");
        return found.isEmpty() ? 0 : found.constFirst().size();
    };
    QTRY_VERIFY_WITH_TIMEOUT(partial() > 500'000, patience);
    const QRgb plain = sidebarColour();
    key("alt+F4");
    QVERIFY(asks(plain));
    key("Escape");
    QTRY_COMPARE_WITH_TIMEOUT(sidebarColour(), plain, patience);
    QCOMPARE(m_program->state(), QProcess::Running);

    key("alt+F4");
    QVERIFY(asks(plain));
    key("Return");
    QTRY_COMPARE_WITH_TIMEOUT(m_program->state(), QProcess::NotRunning, patience);
    QCOMPARE(m_program->exitStatus(), QProcess::NormalExit);
    QCOMPARE(m_program->exitCode(), 0);
    const qint64 kept = partial();
    QVERIFY(kept > 500'000);

    m_site->release();
    startProgram();
    typeLink(QStringLiteral("/held?at=1000000"));
    QTRY_COMPARE_WITH_TIMEOUT(files("*.mp4").size(), 1, patience);
    const QList<TestSite::Request> log = m_site->log();
    QVERIFY(std::any_of(log.begin(), log.end(), [&](const TestSite::Request &request) {
        return request.range == QStringLiteral("bytes=%1-").arg(kept);
    }));
    QVERIFY(files("*.part").isEmpty());
}

}

int main(int argc, char **argv)
{
    const veltro::PrivateDisplay display;
    const QGuiApplication application(argc, argv);
    QGuiApplication::setApplicationName(QStringLiteral("veltro"));
    veltro::TestProgram test(display);
    return QTest::qExec(&test, argc, argv);
}

#include "tst_program.moc"
