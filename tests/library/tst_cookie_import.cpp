// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
// The import as the settings screen uses it, with the engine's own interpreter.
#include "engine/service/yt_dlp_service.h"
#include "library/cookie_file.h"
#include "library/cookie_import.h"
#include "library/cookie_jars_model.h"
#include "library/database.h"
#include "library/download_storage.h"
#include "platform/user_folders.h"
#include "tests/library/awaiting.h"
#include "tests/library/library_case.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSet>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace veltro;
using namespace veltro::test;

namespace {

using Kind = CookieImportError::Kind;

constexpr auto cookieLine = "%1\t%2\t/\tTRUE\t0\t%3\t%4\n";

QString line(const QString &domain, const QString &name)
{
    const bool isWide = domain.startsWith(u'.');
    return QString::fromLatin1(cookieLine)
        .arg(domain, isWide ? QStringLiteral("TRUE") : QStringLiteral("FALSE"), name,
             QStringLiteral("v"));
}

QString summary(const std::vector<HostCookies> &sites)
{
    QStringList parts;
    for (const HostCookies &site : sites) {
        parts << site.host + u':' + QString::number(site.count);
    }
    return parts.join(u' ');
}

mode_t modeOf(const QString &path)
{
    struct stat status = {};
    return stat(QFile::encodeName(path).constData(), &status) == 0 ? status.st_mode & 0777 : 0;
}

/// The error that a task ends with; nothing when it ends well.
template <typename Value>
std::optional<CookieImportError> failureOf(QCoro::Task<Value> task)
{
    try {
        await(std::move(task));
        return std::nullopt;
    } catch (const CookieImportError &error) {
        return error;
    }
}

}

class TestCookieImport : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void initTestCase();
    void init();
    void cleanupTestCase() { m_engine.reset(); }
    void aSiteIsWhatAPersonTypes_data();
    void aSiteIsWhatAPersonTypes();
    void bothSiblingsAreOfferedAndTheConfirmedOnesSaved();
    void anImportReplacesTheFileAndTheRecord();
    void anImportRemovesWhatAKilledOneHasLeft();
    void aBrowsersProfileIsListedAndRead();
    void aHostWithOtherLettersIsFoundUnderItsAsciiForm();
    void whatGoesWrongIsSaidInWords();
    void nothingIsSavedWhereItCannotBe();

private:
    QUrl cookiesTxt(const QString &content) const
    {
        const QString path = m_folder->filePath(QStringLiteral("cookies.txt"));
        QFile file(path);
        [&] {
            QVERIFY(file.open(QIODevice::WriteOnly));
            file.write(content.toUtf8());
        }();
        return QUrl::fromLocalFile(path);
    }
    std::vector<HostCookies> read(const QString &content, const QString &host) const
    {
        return await(m_import->readFile(cookiesTxt(content), host));
    }

    std::unique_ptr<QTemporaryDir> m_home;
    std::unique_ptr<QTemporaryDir> m_folder;
    std::unique_ptr<YtDlpService> m_engine;
    std::shared_ptr<ModelContainer> m_container;
    std::unique_ptr<CookieImport> m_import;
    DownloadStorage m_storage;
};

void TestCookieImport::initTestCase()
{
    // The interpreter takes the environment over when it starts.
    m_home = std::make_unique<QTemporaryDir>();
    qputenv("HOME", QFile::encodeName(m_home->path()));
    qunsetenv("XDG_CONFIG_HOME");
    m_engine = std::make_unique<YtDlpService>();
}

void TestCookieImport::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
    qputenv("XDG_DATA_HOME", QFile::encodeName(m_folder->filePath(QStringLiteral("data"))));
    m_container = makeContainer();
    m_import = std::make_unique<CookieImport>(*m_engine, m_container);
}

void TestCookieImport::aSiteIsWhatAPersonTypes_data()
{
    QTest::addColumn<QString>("typed");
    QTest::addColumn<QString>("host");
    const auto row = [](const char *why, const char *typed, const char *host) {
        QTest::newRow(why) << QString::fromUtf8(typed) << QString::fromUtf8(host);
    };
    row("a host", "example.com", "example.com");
    row("in capitals, with blanks around it", "  WWW.Example.COM\n", "www.example.com");
    row("a page", "https://user@www.example.com:8080/watch?v=1#t", "www.example.com");
    row("a page without its scheme", "example.com/watch", "example.com");
    row("other letters", "xn--bcher-kva.com", "bücher.com");
    row("an address in numbers", "http://[::1]:80/", "::1");
    row("nothing", "  ", "");
    row("a sentence", "the video site", "");
    row("a file", "file:///etc/passwd", "");
    row("a way out of the folder", "../../etc", "");
}

void TestCookieImport::aSiteIsWhatAPersonTypes()
{
    QFETCH(QString, typed);
    QFETCH(QString, host);
    try {
        QCOMPARE(CookieImport::hostOf(typed), host);
        QVERIFY(!host.isEmpty());
    } catch (const CookieImportError &error) {
        QVERIFY(host.isEmpty());
        QCOMPARE(error.kind(), Kind::notASite);
    }
}

void TestCookieImport::bothSiblingsAreOfferedAndTheConfirmedOnesSaved()
{
    const QString content = line(QStringLiteral("example.com"), QStringLiteral("a")) +
                            line(QStringLiteral(".example.com"), QStringLiteral("b")) +
                            line(QStringLiteral("www.example.com"), QStringLiteral("c")) +
                            line(QStringLiteral("other.org"), QStringLiteral("d"));
    QCOMPARE(summary(read(content, QStringLiteral("example.com"))),
             QStringLiteral("example.com:2 www.example.com:2"));
    const auto sites = read(content, QStringLiteral("www.example.com"));
    QCOMPARE(summary(sites), QStringLiteral("www.example.com:2 example.com:2"));
    QVERIFY(!m_storage.cookieFile(QStringLiteral("example.com"))); // nothing yet
    await(m_import->save(sites));
    const auto www = m_storage.cookieFile(QStringLiteral("www.example.com"));
    const auto bare = m_storage.cookieFile(QStringLiteral("example.com"));
    QVERIFY(www && bare);
    QFile file(www->toLocalFile());
    QVERIFY(file.open(QIODevice::ReadOnly));
    const QByteArray saved = file.readAll();
    QVERIFY(saved.startsWith("# Netscape HTTP Cookie File\n"));
    QVERIFY(saved.contains("www.example.com\tFALSE\t/\tTRUE\t0\tc\tv\n"));
    QVERIFY(saved.contains(".example.com\tTRUE\t/\tTRUE\t0\tb\tv\n"));
    QVERIFY(!saved.contains("\ta\tv") && !saved.contains("other"));
    QCOMPARE(modeOf(www->toLocalFile()), 0600U);
    QCOMPARE(modeOf(QFileInfo(www->toLocalFile()).path()), 0700U);
    CookieJarsModel jars;
    jars.setContainer(m_container);
    QTRY_COMPARE_WITH_TIMEOUT(jars.count(), 2, patience);
    QCOMPARE(jars.index(1).data(CookieJarsModel::fileUrlRole).toUrl(), *www);
}

void TestCookieImport::anImportReplacesTheFileAndTheRecord()
{
    const QString host = QStringLiteral("example.com");
    const QDateTime before = QDateTime::currentDateTimeUtc();
    await(m_import->save(read(line(host, QStringLiteral("old")), host)));
    const QString path = m_storage.cookieFile(host)->toLocalFile();
    QVERIFY(QFile::setPermissions(path, QFile::ReadOwner | QFile::ReadOther));
    QVERIFY(QFile::setPermissions(QFileInfo(path).path(), QFile::ReadOwner | QFile::WriteOwner |
                                                              QFile::ExeOwner | QFile::ReadOther));
    QFile reader(path);
    QVERIFY(reader.open(QIODevice::ReadOnly));
    const QByteArray old = reader.readAll();
    await(m_import->save(read(line(host, QStringLiteral("new")), host)));
    QVERIFY(reader.seek(0));
    QCOMPARE(reader.readAll(), old); // who reads goes on reading the old one
    QFile file(path);
    QVERIFY(file.open(QIODevice::ReadOnly));
    QVERIFY(file.readAll().contains("\tnew\t"));
    QCOMPARE(modeOf(path), 0600U);
    QCOMPARE(modeOf(QFileInfo(path).path()), 0700U);
    QCOMPARE(QDir(QFileInfo(path).path()).entryList(QDir::Files | QDir::Hidden).size(), 1);
    Database database(m_container->file());
    QCOMPARE(database.number("SELECT count(*) FROM CookieJar"), 1);
    QVERIFY(database.number("SELECT updatedAt FROM CookieJar") >= before.toMSecsSinceEpoch());
}

void TestCookieImport::anImportRemovesWhatAKilledOneHasLeft()
{
    const QString host = QStringLiteral("example.com");
    const QDir folder(cookiesDirectory().toLocalFile());
    const auto names = [&folder] {
        const QStringList all = folder.entryList(QDir::Files | QDir::Hidden);
        return QSet<QString>(all.begin(), all.end());
    };
    const QSet<QString> others{
        QStringLiteral(".being-written-by-hand"), QStringLiteral(".being-written.backups"),
        QStringLiteral("other.org.cookies.txt"), QStringLiteral("other.org.cookies.txt.backup")};
    const QSet<QString> left{QStringLiteral(".being-written"),
                             QStringLiteral(".being-written.aZbYcX")};
    for (const QString &name : others + left) {
        QVERIFY(QFile::copy(cookiesTxt(name).toLocalFile(), folder.filePath(name)));
    }
    {
        // As a process has it that writes just now.
        const int writer = open(QFile::encodeName(folder.path()).constData(), O_RDONLY);
        QCOMPARE(flock(writer, LOCK_EX), 0);
        removeCookieLeavings(folder.path());
        QCOMPARE(names(), others + left);
        close(writer);
    }
    await(m_import->save(read(line(host, QStringLiteral("a")), host)));
    QCOMPARE(names(), others + QSet<QString>{host + QStringLiteral(".cookies.txt")});
}

void TestCookieImport::aBrowsersProfileIsListedAndRead()
{
    const QString profile = m_home->filePath(QStringLiteral(".mozilla/firefox/x.default"));
    QVERIFY(QDir().mkpath(profile));
    Database database(profile + QStringLiteral("/cookies.sqlite"));
    database.execute("CREATE TABLE moz_cookies (originAttributes TEXT DEFAULT '', name TEXT, "
                     "value TEXT, host TEXT, path TEXT, expiry INTEGER, isSecure INTEGER);"
                     "INSERT INTO moz_cookies VALUES ('', 'n', 'v', '.example.com', '/', "
                     "4000000000, 1)");
    const auto profiles = await(m_import->browsers());
    const BrowserProfile own{QStringLiteral("Firefox"), QStringLiteral("x.default"),
                             QStringLiteral("firefox"), profile};
    QVERIFY(profiles == std::vector{own});
    const auto sites = await(m_import->readBrowser(own, QStringLiteral("example.com")));
    QCOMPARE(summary(sites), QStringLiteral("example.com:1 www.example.com:1"));
    const auto failure = failureOf(m_import->readBrowser(own, QStringLiteral("other.org")));
    QVERIFY(failure && failure->kind() == Kind::none);
    QCOMPARE(failure->description(), QStringLiteral("There are no cookies for other.org in "
                                                    "Firefox. Sign in to the site there first."));
}

void TestCookieImport::aHostWithOtherLettersIsFoundUnderItsAsciiForm()
{
    const QString host = CookieImport::hostOf(QString::fromUtf8("https://bücher.com/x"));
    const auto sites = read(line(QStringLiteral(".xn--bcher-kva.com"), QStringLiteral("a")), host);
    QCOMPARE(sites.front().host, host);
    await(m_import->save(sites));
    QVERIFY(m_storage.cookieFile(QUrl(QString::fromUtf8("https://BÜCHER.com")).host()));
}

void TestCookieImport::whatGoesWrongIsSaidInWords()
{
    const QString host = QStringLiteral("example.com");
    const auto failure = [&](const QString &content) {
        return failureOf(m_import->readFile(cookiesTxt(content), host));
    };
    const auto notCookies = failure(QStringLiteral("{\"cookies\": []}"));
    QVERIFY(notCookies && notCookies->kind() == Kind::notCookies);
    QCOMPARE(QString::fromUtf8(notCookies->what()),
             QStringLiteral("cookies.txt is not in the Netscape cookies.txt format."));
    const auto none = failure(line(QStringLiteral("other.org"), QStringLiteral("a")));
    QVERIFY(none && none->kind() == Kind::none);
    const QUrl missing = QUrl::fromLocalFile(m_folder->filePath(QStringLiteral("gone.txt")));
    const auto gone = failureOf(m_import->readFile(missing, host));
    QVERIFY(gone && gone->kind() == Kind::missing);
    QVERIFY(gone->description().contains(QLatin1String("gone.txt")));
}

void TestCookieImport::nothingIsSavedWhereItCannotBe()
{
    const QString host = QStringLiteral("example.com");
    const auto sites = read(line(host, QStringLiteral("a")), host);
    const CookieImport homeless(*m_engine, nullptr);
    const auto noLibrary = failureOf(homeless.save(sites));
    QVERIFY(noLibrary && noLibrary->kind() == Kind::unsaved);
    QVERIFY(!m_storage.cookieFile(host));
    // A folder that stands where the file should be.
    QVERIFY(QDir().mkpath(dataFolder() + QStringLiteral("/cookies/example.com.cookies.txt")));
    const auto obstacle = failureOf(m_import->save(sites));
    QVERIFY(obstacle && obstacle->kind() == Kind::unsaved);
    QVERIFY(obstacle->description().startsWith(
        QLatin1String("The cookies of example.com could not be saved: ")));
    Database database(m_container->file());
    QCOMPARE(database.number("SELECT count(*) FROM CookieJar"), 0);
    // What came before the obstacle is saved, and known.
    HostCookies sibling = sites.front();
    sibling.host.prepend(QStringLiteral("www."));
    QVERIFY(failureOf(m_import->save({sibling, sites.front()})));
    QVERIFY(m_storage.cookieFile(sibling.host));
    QCOMPARE(database.text("SELECT host FROM CookieJar"), sibling.host);
}

QTEST_GUILESS_MAIN(TestCookieImport)
#include "tst_cookie_import.moc"
