// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/workspace.h"
#include "tests/files.h"
#include "tests/platform/private_bus.h"

#include <QGuiApplication>
#include <QTest>
#include <QThreadPool>

using namespace veltro;

namespace {

const QString fileManager = QStringLiteral("org.freedesktop.FileManager1");

/// A file manager, as far as showing items goes.
class FileManager : public QObject {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.FileManager1")
public:
    QStringList shown;
public Q_SLOTS:
    void ShowItems(const QStringList &items, const QString &) { shown = items; }
};

/// What was started: the program and its arguments, one list each.
struct Launches {
    QList<QStringList> all;
    QString missing; // a program that is not there
    DesktopWorkspace::Launcher launcher()
    {
        return [this](const QString &program, const QStringList &arguments) {
            if (program == missing) {
                return false;
            }
            all += QStringList{program} + arguments;
            return true;
        };
    }
};

}

class TestWorkspace : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void initTestCase();
    void onlyWhatShowsIsOpened_data();
    void onlyWhatShowsIsOpened();
    void aFileIsHandedToItsDefaultProgramByItsAddress();
    void onlyWebAddressesAreOpenedAsPages();
    void filesAreShownSelectedInTheFileManager();
    void theFolderIsOpenedWhereNoFileManagerAnswers();
    void whatIsStartedDoesNotSeeTheInterpretersSettings();
    void aSoundMayBeAskedForAnywhere();

private:
    QString makeFile(const QString &name, const QByteArray &content, bool isExecutable = false);
    PrivateBus m_bus;
    QTemporaryDir m_folder;
};

void TestWorkspace::initTestCase()
{
    QVERIFY(m_bus.start());
}

QString TestWorkspace::makeFile(const QString &name, const QByteArray &content, bool isExecutable)
{
    const QString path = m_folder.filePath(name);
    static_cast<void>(test::writeFile(path, content));
    QFile::setPermissions(path, QFile::ReadOwner | QFile::WriteOwner |
                                    (isExecutable ? QFile::ExeOwner : QFile::Permissions()));
    return path;
}

void TestWorkspace::onlyWhatShowsIsOpened_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<bool>("isExecutable");
    QTest::addColumn<bool>("isSafe");
    const QByteArray mp4("\0\0\0\x20"
                         "ftypisom\0\0\2\0isomiso2avc1mp41",
                         32);
    const QByteArray elf = QByteArray("\x7f"
                                      "ELF\2\1\1\0",
                                      8) +
                           QByteArray(56, '\0');
    const auto row = [](const char *why, const char *name, const QByteArray &content,
                        bool isExecutable, bool isSafe) {
        QTest::newRow(why) << QString::fromUtf8(name) << content << isExecutable << isSafe;
    };
    row("a video", "a.mp4", mp4, false, true);
    row("a video on a file system that marks every file", "a b.mp4", mp4, true, true);
    row("subtitles", "a.vtt", "WEBVTT\n", false, true);
    row("a picture", "a.jpg", "\xff\xd8\xff\xe0", false, true);
    row("a text", "notes.txt", "hello\n", false, true);
    row("a launcher", "video.desktop", "[Desktop Entry]\nType=Application\nExec=x\n", false, false);
    row("a launcher by what it holds", "video", "[Desktop Entry]\nType=Application\n", false,
        false);
    row("a shell script", "a.sh", "#!/bin/sh\n", false, false);
    row("a script in a video's name", "b.mp4", "#!/bin/sh\necho\n", true, false);
    row("a script of another language", "a.py", "import os\n", false, false);
    row("a program", "tool", elf, true, false);
    row("a program without its mark", "tool2", elf, false, false);
    row("a program for another system", "setup.exe", "MZ\x90", false, false);
    row("an archive that a run time runs", "a.jar", "PK\3\4", false, false);
    row("an unknown file that may be run", "thing", "\1\2\3", true, false);
}

void TestWorkspace::onlyWhatShowsIsOpened()
{
    QFETCH(const QString, name);
    QFETCH(const QByteArray, content);
    QFETCH(const bool, isExecutable);
    QFETCH(const bool, isSafe);
    const QString path = makeFile(name, content, isExecutable);
    Launches launches;
    DesktopWorkspace workspace(launches.launcher());
    QCOMPARE(workspace.open(QUrl::fromLocalFile(path)), isSafe);
    QCOMPARE(launches.all.isEmpty(), !isSafe);
    // A link in another name changes nothing.
    const QString linkPath = m_folder.filePath(QStringLiteral("link.mkv"));
    QVERIFY(QFile::link(path, linkPath));
    QCOMPARE(isSafeToOpen(linkPath), isSafe);
    QVERIFY(QFile::remove(linkPath));
}

void TestWorkspace::aFileIsHandedToItsDefaultProgramByItsAddress()
{
    Launches launches;
    DesktopWorkspace workspace(launches.launcher());
    const QString path = makeFile(QStringLiteral("100% é #1?.mp4"), "x");
    QVERIFY(workspace.open(QUrl::fromLocalFile(path)));
    QCOMPARE(launches.all.size(), 1);
    QCOMPARE(launches.all.first().first(), QStringLiteral("xdg-open"));
    QVERIFY(launches.all.first().at(1).endsWith(QLatin1String("/100%25%20%C3%A9%20%231%3F.mp4")));

    launches.missing = QStringLiteral("xdg-open");
    QVERIFY(workspace.open(QUrl::fromLocalFile(path)));
    QCOMPARE(launches.all.last().mid(0, 2),
             (QStringList{QStringLiteral("gio"), QStringLiteral("open")}));

    QVERIFY(!workspace.open(QUrl::fromLocalFile(m_folder.filePath(QStringLiteral("gone.mp4")))));
    QVERIFY(!workspace.open(QUrl(QStringLiteral("https://site.example/a.mp4"))));
    QVERIFY(!workspace.open(QUrl::fromLocalFile(m_folder.path())));
    QCOMPARE(launches.all.size(), 2);
}

void TestWorkspace::onlyWebAddressesAreOpenedAsPages()
{
    Launches launches;
    DesktopWorkspace workspace(launches.launcher());
    for (const char *const page : {"file:///etc/passwd", "ftp://a/b", "javascript:1", "veltro://a",
                                   "/etc/passwd", "", "https:", "--help", "mailto:a@b"}) {
        QVERIFY(!workspace.openWebPage(QUrl(QString::fromLatin1(page))));
    }
    QVERIFY(launches.all.isEmpty());
    QVERIFY(workspace.openWebPage(QUrl(QStringLiteral("HTTPS://Site.example/é?a=b c"))));
    QCOMPARE(launches.all.first(),
             (QStringList{QStringLiteral("xdg-open"),
                          QStringLiteral("https://site.example/%C3%A9?a=b%20c")}));
}

void TestWorkspace::filesAreShownSelectedInTheFileManager()
{
    FileManager manager;
    QDBusConnection bus = QDBusConnection::sessionBus();
    QVERIFY(bus.registerObject(QStringLiteral("/org/freedesktop/FileManager1"), &manager,
                               QDBusConnection::ExportAllSlots));
    QVERIFY(bus.registerService(fileManager));
    Launches launches;
    DesktopWorkspace workspace(launches.launcher());
    const QUrl one = QUrl::fromLocalFile(makeFile(QStringLiteral("one é.mp4"), "x"));
    const QUrl two = QUrl::fromLocalFile(makeFile(QStringLiteral("two.mp4"), "x"));
    workspace.reveal({one, two});
    QTRY_COMPARE(manager.shown, (QStringList{QString::fromLatin1(one.toEncoded()),
                                             QString::fromLatin1(two.toEncoded())}));
    QVERIFY(manager.shown.first().endsWith(QLatin1String("one%20%C3%A9.mp4")));
    QVERIFY(launches.all.isEmpty());
    QVERIFY(bus.unregisterService(fileManager));
    bus.unregisterObject(QStringLiteral("/org/freedesktop/FileManager1"));
}

void TestWorkspace::theFolderIsOpenedWhereNoFileManagerAnswers()
{
    Launches launches;
    const QString folder = QString::fromLatin1(QUrl::fromLocalFile(m_folder.path()).toEncoded());
    {
        DesktopWorkspace workspace(launches.launcher());
        workspace.reveal(QUrl::fromLocalFile(makeFile(QStringLiteral("one.mp4"), "x")));
    } // the answer comes later
    QTRY_COMPARE(launches.all, (QList<QStringList>{{QStringLiteral("xdg-open"), folder}}));
    // A file that is gone leaves its folder to be shown.
    DesktopWorkspace workspace(launches.launcher());
    workspace.reveal(QUrl::fromLocalFile(m_folder.filePath(QStringLiteral("gone.mp4"))));
    QCOMPARE(launches.all.size(), 2);
    QCOMPARE(launches.all.last().last(), folder);
}

void TestWorkspace::whatIsStartedDoesNotSeeTheInterpretersSettings()
{
    const QString out = m_folder.filePath(QStringLiteral("seen"));
    makeFile(QStringLiteral("bin/xdg-open"),
             "#!/bin/sh\n{ env; echo \"arg=$1\"; } >'" + out.toUtf8() + ".new'\nmv '" +
                 out.toUtf8() + ".new' '" + out.toUtf8() + "'\n",
             true);
    const QByteArray path = qgetenv("PATH");
    qputenv("PATH", m_folder.path().toUtf8() + "/bin:" + path);
    qputenv("PYTHONHOME", "/of/the/bundle");
    qputenv("PYTHONPATH", "/of/the/bundle");
    qputenv("SSL_CERT_FILE", "/of/the/bundle");
    DesktopWorkspace workspace;
    QVERIFY(workspace.openWebPage(QUrl(QStringLiteral("https://site.example/"))));
    QTRY_VERIFY_WITH_TIMEOUT(QFile::exists(out), 30'000);
    qputenv("PATH", path);
    const QByteArray seen = test::contentOf(out);
    QVERIFY(seen.contains("arg=https://site.example/"));
    QVERIFY(seen.contains("HOME="));
    QVERIFY(!seen.contains("/of/the/bundle"));
}

void TestWorkspace::aSoundMayBeAskedForAnywhere()
{
    DesktopWorkspace workspace;
    workspace.beep(); // with no sound device and no display
    workspace.haptic();
    QVERIFY(QThreadPool::globalInstance()->waitForDone(30'000));
    QCoreApplication::processEvents();
}

int main(int argc, char **argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QGuiApplication application(argc, argv);
    TestWorkspace test;
    return QTest::qExec(&test, argc, argv);
}
#include "tst_workspace.moc"
