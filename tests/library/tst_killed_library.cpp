// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
// Whatever call the process is killed before, and whenever the disk becomes full: what was told to
// be saved is there, and found, the store is sound, and no file has its final name before it is
// whole.
#include "library/cookie_file.h"
#include "library/database.h"
#include "library/search_indexer.h"
#include "tests/library/library_case.h"
#include "tests/platform/ffmpeg/stock_tool.h"

#include <QProcess>
#include <QSet>

#include <sys/stat.h>

using namespace veltro;
using namespace veltro::test;

namespace {

constexpr int rounds = 2; // of the writer, the first of which begins its files
constexpr int cookieFileSize = 100'000;

struct Told {
    QStringList saved; ///< ids, or the numbers of rounds
    int failures = 0;
    int calls = 0;
    bool hasContainer = true;
};

Told parse(const QByteArray &output)
{
    Told told;
    for (const QByteArray &line : output.split('\n')) {
        const QList<QByteArray> words = line.split(' ');
        if (words.front() == "saved") {
            told.saved << QString::fromLatin1(words.value(1));
        } else if (words.front() == "calls") {
            told.calls = words.value(1).toInt();
        } else if (words.front() == "failed") {
            ++told.failures;
        } else if (words.front() == "no") {
            told.hasContainer = false;
        }
    }
    return told;
}

}

class TestKilledLibrary : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void initTestCase();
    void init();
    void nothingIsLostWhereverItIsKilled();
    void nothingIsLostWhenTheDiskBecomesFull();
    void cookieFilesAreWholeWhereverItIsKilled();
    void cookieFilesAreWholeWhenTheDiskBecomesFull();

private:
    Told run(const QStringList &what, const QString &how, int count);
    Told runItems(const QString &how, int count);
    Told runCookies(const QString &how, int count);
    void lookAround(const Told &told, int count);
    void lookForEntries(ModelContainer &container, Database &database);
    void lookAtCookies(const Told &told, int count);

    std::unique_ptr<QTemporaryDir> m_media;
    std::unique_ptr<QTemporaryDir> m_folder;
    QString m_file;
    int m_leavings = 0; // cookie files that were only begun
    int m_repaired = 0; // entries that only the next start has made known to the search
};

void TestKilledLibrary::initTestCase()
{
    m_media = std::make_unique<QTemporaryDir>();
    QVERIFY(ffmpeg::makeMedia(
        QStringLiteral("-f lavfi -i testsrc=duration=1:rate=5:size=160x120 -c:v mpeg4 0.mp4"),
        m_media->path()));
}

void TestKilledLibrary::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
    m_file = m_folder->filePath(QStringLiteral("library.sqlite"));
}

Told TestKilledLibrary::run(const QStringList &what, const QString &how, int count)
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("XDG_DATA_HOME"), m_folder->path());
    QProcess process;
    process.setProcessEnvironment(environment);
    process.start(QCoreApplication::applicationDirPath() + QStringLiteral("/killed_writer"),
                  QStringList(m_file) + what + QStringList{how, QString::number(count)});
    if (!process.waitForFinished(patience)) {
        process.kill();
        process.waitForFinished();
    }
    return parse(process.readAllStandardOutput());
}

Told TestKilledLibrary::runItems(const QString &how, int count)
{
    init();
    for (int number = 0; number < rounds; ++number) {
        QFile::copy(m_media->filePath(QStringLiteral("0.mp4")),
                    m_folder->filePath(QStringLiteral("%1.mp4").arg(number)));
    }
    return run({QStringLiteral("items"), m_folder->path()}, how, count);
}

Told TestKilledLibrary::runCookies(const QString &how, int count)
{
    init();
    return run({QStringLiteral("cookies"), QString::number(cookieFileSize)}, how, count);
}

/// What the next start finds.
void TestKilledLibrary::lookAround(const Told &told, int count)
{
    const LogLines lines;
    const auto container = makeContainer(m_file);
    QVERIFY2(container, qPrintable(QString::number(count)));
    QVERIFY2(lines.lines().isEmpty(), qPrintable(lines.lines().join(u'\n')));
    Database database(m_file);
    QCOMPARE(database.text("PRAGMA integrity_check"), QStringLiteral("ok"));
    QCOMPARE(database.number("SELECT count(*) FROM DownloadItem"),
             database.number("SELECT count(*) FROM RowSearchKey"));
    for (const QString &id : told.saved) {
        Statement statement = database.prepare("SELECT count(*) FROM DownloadItem WHERE id = ?1");
        statement.bind(1, id);
        QVERIFY(statement.step());
        QVERIFY2(statement.integer(0) == 1, qPrintable(QString::number(count)));
    }
    lookForEntries(*container, database);
    QVERIFY2(lines.lines().isEmpty(), qPrintable(lines.lines().join(u'\n')));
    for (const QString &name : QDir(m_folder->path()).entryList({QStringLiteral("*.jpg")})) {
        const QByteArray content = contentOf(m_folder->filePath(name));
        QVERIFY2(content.startsWith("\xff\xd8\xff") && content.endsWith("\xff\xd9"),
                 qPrintable(QString::number(count)));
    }
}

/// Whatever the library has is found by the desktop from now on.
void TestKilledLibrary::lookForEntries(ModelContainer &container, Database &database)
{
    QDir(m_folder->path()).mkpath(QStringLiteral("veltro"));
    SearchIndex index(m_folder->filePath(QStringLiteral("veltro/search.sqlite")));
    QStringList ids;
    Statement statement = database.prepare("SELECT id FROM DownloadItem");
    while (statement.step()) {
        const std::string_view id = statement.text(0);
        ids << QString::fromLatin1(id.data(), static_cast<qsizetype>(id.size()));
    }
    const auto known = static_cast<int>(index.items(ids).size());
    indexWhatIsMissing(container, index);
    const std::vector<SearchableItem> found = index.search({QStringLiteral("veltro")}, 10);
    QCOMPARE(static_cast<qsizetype>(index.items(ids).size()), ids.size());
    QCOMPARE(static_cast<qsizetype>(found.size()), ids.size());
    m_repaired += static_cast<int>(ids.size()) - known;
}

/// The rounds leave files of one letter each, and only rise. The next start leaves those alone.
void TestKilledLibrary::lookAtCookies(const Told &told, int count)
{
    const auto container = makeContainer(m_file);
    QVERIFY(container);
    Database database(m_file);
    QCOMPARE(database.text("PRAGMA integrity_check"), QStringLiteral("ok"));
    const QDir folder(m_folder->filePath(QStringLiteral("veltro/cookies")));
    for (const char *const host : {"example.com", "www.example.com"}) {
        QFile file(folder.filePath(QLatin1String(host) + QStringLiteral(".cookies.txt")));
        Statement record = database.prepare("SELECT fileURL FROM CookieJar WHERE host = ?1");
        record.bind(1, std::string_view(host));
        const bool isRecorded = record.step();
        QVERIFY2(isRecorded || told.saved.isEmpty(), qPrintable(QString::number(count)));
        if (!file.open(QIODevice::ReadOnly)) {
            QVERIFY2(!isRecorded, qPrintable(QString::number(count)));
            continue;
        }
        const QByteArray content = file.readAll();
        QCOMPARE(content.size(), cookieFileSize);
        QVERIFY2(content == QByteArray(cookieFileSize, content.front()),
                 qPrintable(QString::number(count)));
        QVERIFY(content.front() - 'a' >= told.saved.value(told.saved.size() - 1).toInt());
    }
    // What was begun is no wider open than what was finished.
    for (const QFileInfo &file : folder.entryInfoList(QDir::Files | QDir::Hidden)) {
        struct stat status = {};
        QCOMPARE(stat(QFile::encodeName(file.filePath()).constData(), &status), 0);
        QCOMPARE(status.st_mode & 0777, 0600U);
        m_leavings += file.fileName().endsWith(QLatin1String(".cookies.txt")) ? 0 : 1;
    }
    removeCookieLeavings(folder.path());
    QCOMPARE(folder.entryList(QDir::Files | QDir::Hidden).size(),
             folder.entryList({QStringLiteral("*.cookies.txt")}, QDir::Files).size());
}

void TestKilledLibrary::cookieFilesAreWholeWhereverItIsKilled()
{
    const Told whole = runCookies(QStringLiteral("kill"), 0);
    QCOMPARE(whole.saved.size(), rounds);
    lookAtCookies(whole, 0);
    QSet<qsizetype> savedCounts;
    for (int count = 1; count <= whole.calls; ++count) {
        const Told told = runCookies(QStringLiteral("kill"), count);
        QCOMPARE(told.calls, 0);
        savedCounts.insert(told.saved.size());
        lookAtCookies(told, count);
    }
    QCOMPARE(savedCounts.size(), rounds);
    QVERIFY(m_leavings > 0);
}

void TestKilledLibrary::cookieFilesAreWholeWhenTheDiskBecomesFull()
{
    const int calls = runCookies(QStringLiteral("full"), 0).calls;
    bool someFailed = false;
    for (int count = 1; count <= calls; ++count) {
        const Told told = runCookies(QStringLiteral("full"), count);
        QCOMPARE(told.saved.size() + told.failures, told.hasContainer ? rounds : 0);
        someFailed = someFailed || told.failures > 0;
        lookAtCookies(told, count);
    }
    QVERIFY(someFailed);
}

void TestKilledLibrary::nothingIsLostWhereverItIsKilled()
{
    const Told whole = runItems(QStringLiteral("kill"), 0);
    QCOMPARE(whole.saved.size(), rounds);
    QVERIFY(whole.calls > 20);
    lookAround(whole, 0);
    QSet<qsizetype> savedCounts;
    for (int count = 1; count <= whole.calls; ++count) {
        const Told told = runItems(QStringLiteral("kill"), count);
        QCOMPARE(told.calls, 0); // it did not come to its end
        savedCounts.insert(told.saved.size());
        lookAround(told, count);
    }
    QCOMPARE(savedCounts.size(), rounds + 1); // killed around each of the saves
    QVERIFY(m_repaired > 0);                  // and between an item and its entry in the index
}

void TestKilledLibrary::nothingIsLostWhenTheDiskBecomesFull()
{
    const int calls = runItems(QStringLiteral("full"), 0).calls;
    bool someFailed = false;
    for (int count = 1; count <= calls; count += 2) {
        const Told told = runItems(QStringLiteral("full"), count);
        QCOMPARE(told.saved.size() + told.failures, told.hasContainer ? rounds : 0);
        someFailed = someFailed || told.failures > 0;
        QVERIFY(QDir(m_folder->path()).entryList({QStringLiteral("*damaged*")}).isEmpty());
        lookAround(told, count);
    }
    QVERIFY(someFailed);
}

QTEST_GUILESS_MAIN(TestKilledLibrary)
#include "tst_killed_library.moc"
