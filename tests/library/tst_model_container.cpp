// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "library/database.h"
#include "tests/files.h"
#include "tests/library/library_case.h"

#include <unistd.h>

using namespace veltro;
using namespace veltro::test;

namespace {

constexpr uid_t nobody = 65'534;

/// Writes over a file's first bytes, as a fault of the disk does.
void damageHeader(const QString &path)
{
    QFile file(path);
    QVERIFY(file.open(QIODevice::ReadWrite));
    QCOMPARE(file.write(QByteArray(100, '#')), 100);
}

}

class TestModelContainer : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void init()
    {
        m_folder = std::make_unique<QTemporaryDir>();
        m_file = m_folder->filePath(QStringLiteral("library.sqlite"));
    }
    void everyPropertyIsKeptAsItWas_data();
    void everyPropertyIsKeptAsItWas();
    void aRecordTakesThePlaceOfTheOneWithItsId();
    void commitsAreDurable();
    void whatIsNotCommittedHasNotHappened();
    void aDamagedFileIsKeptAsideWithItsLog_data();
    void aDamagedFileIsKeptAsideWithItsLog();
    void twoDamagedFilesOfASecondAreBothKept();
    void aLogWithoutItsFileIsKeptAside();
    void aDamagedFileStaysWhileSomeoneUsesIt();
    void aStoreThatCannotBeUsedStays_data();
    void aStoreThatCannotBeUsedStays();
    void aStoreThatCannotBeWrittenStays_data();
    void aStoreThatCannotBeWrittenStays();

private:
    QStringList files() const
    {
        QStringList names = QDir(m_folder->path()).entryList(QDir::Files);
        names.removeAll(QStringLiteral("library.sqlite.lock"));
        return names;
    }

    std::unique_ptr<QTemporaryDir> m_folder;
    QString m_file;
};

void TestModelContainer::everyPropertyIsKeptAsItWas_data()
{
    QTest::addColumn<DownloadItem>("item");
    DownloadItem bare = itemAt(1, QString());
    bare.completedAt.reset();
    QTest::newRow("nothing that may be absent") << bare;
    DownloadItem full = itemAt(2, QStringLiteral("A title"), QStringLiteral("Someone"));
    full.durationSeconds = 12.345;
    full.thumbnailFileURL = QUrl::fromLocalFile(QStringLiteral("/a b/c#%20ö.jpg"));
    full.localFileURL = QUrl::fromLocalFile(QStringLiteral("/a b/c?.mp4"));
    full.failureReason = QStringLiteral("a reason");
    full.cookieHost = QStringLiteral("www.example.com");
    full.fileSizeBytes = std::numeric_limits<qint64>::max();
    QTest::newRow("everything") << full;
    const auto titled = [](const char *why, const QString &title) {
        QTest::newRow(why) << itemAt(3, title, title);
    };
    titled("quotes", QStringLiteral("'; DROP TABLE DownloadItem; --\"%_"));
    titled("letters of all planes", QStringLiteral("é \u202e 漢字 \U0001F3AC"));
    titled("control characters", QString::fromLatin1("a\0b\n\t\x7f", 6));
    titled("an empty uploader is not an absent one", QStringLiteral(""));
    titled("a very long one", QString(100'000, u'x'));
}

void TestModelContainer::everyPropertyIsKeptAsItWas()
{
    QFETCH(DownloadItem, item);
    QVERIFY(save(makeContainer(m_file), {item}));
    LibraryItemsModel model;
    model.setContainer(makeContainer(m_file));
    QTRY_VERIFY_WITH_TIMEOUT(model.isLoaded(), patience);
    QCOMPARE(model.count(), 1);
    const std::optional<DownloadItem> kept = model.item(item.id);
    QVERIFY(kept);
    QVERIFY(*kept == item);
}

void TestModelContainer::aRecordTakesThePlaceOfTheOneWithItsId()
{
    DownloadItem item = itemAt(1, QStringLiteral("before"));
    const auto container = makeContainer(m_file);
    QVERIFY(save(container, {item, itemAt(2, QStringLiteral("other"))}));
    item.title = QStringLiteral("after");
    QVERIFY(save(container, {item}));
    Database database(m_file);
    QCOMPARE(database.number("SELECT count(*) FROM DownloadItem"), 2);
    QCOMPARE(database.text("SELECT group_concat(title) FROM (SELECT title FROM DownloadItem "
                           "ORDER BY title)"),
             QStringLiteral("after,other"));
    ModelContext context(container);
    for (const char *const file : {"file:///a", "file:///b"}) {
        context.insert(CookieJar{QStringLiteral("example.com"), QUrl(QLatin1String(file)),
                                 QDateTime::currentDateTimeUtc()});
    }
    QVERIFY(context.save());
    QCOMPARE(database.text("SELECT group_concat(fileURL) FROM CookieJar"),
             QStringLiteral("file:///b"));
}

void TestModelContainer::commitsAreDurable()
{
    const auto container = makeContainer(m_file);
    QString mode;
    qint64 synchronous = 0;
    container->write([&](Database &database) {
        mode = database.text("PRAGMA journal_mode");
        synchronous = database.number("PRAGMA synchronous");
        return StoreChange();
    });
    QCOMPARE(mode, QStringLiteral("wal"));
    QCOMPARE(synchronous, 2); // FULL
}

void TestModelContainer::whatIsNotCommittedHasNotHappened()
{
    const auto container = makeContainer(m_file);
    QVERIFY(save(container, {itemAt(1, QStringLiteral("before"))}));
    QVERIFY_THROWS_EXCEPTION(StoreError, container->write([](Database &database) -> StoreChange {
        database.execute("DELETE FROM DownloadItem");
        throw StoreError(StoreError::Kind::full, "made up");
    }));
    QVERIFY(save(container, {itemAt(2, QStringLiteral("after"))}));
    Database database(m_file);
    QCOMPARE(database.number("SELECT count(*) FROM DownloadItem"), 2);
}

void TestModelContainer::aDamagedFileIsKeptAsideWithItsLog_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::newRow("no database") << QByteArray(50'000, 'x');
    QTest::newRow("a few bytes") << QByteArray("hello");
    QByteArray pages(8192, '\0');
    pages.replace(0, 16, QByteArray("SQLite format 3\0", 16));
    QTest::newRow("a header and nothing behind it") << pages;
}

void TestModelContainer::aDamagedFileIsKeptAsideWithItsLog()
{
    QFETCH(QByteArray, content);
    const QByteArray log("a log of some kind");
    writeFile(m_file, content);
    writeFile(m_file + QStringLiteral("-wal"), log);
    const LogLines lines;
    const auto container = makeContainer(m_file);
    QVERIFY(container);
    QCOMPARE(lines.lines().size(), 1);
    QVERIFY(lines.lines().front().contains(QLatin1String("damaged")));
    QVERIFY(save(container, {itemAt(1, QStringLiteral("new"))}));
    QStringList aside = files().filter(QStringLiteral(".damaged-"));
    aside.removeIf([](const QString &name) { return name.endsWith(QLatin1String("-shm")); });
    QCOMPARE(aside.size(), 2);
    const QString today = QDate::currentDate().toString(Qt::ISODate);
    QVERIFY2(aside.front().contains(today), qPrintable(aside.front()));
    QCOMPARE(contentOf(m_folder->filePath(aside.front())), content);
    QCOMPARE(aside.back(), aside.front() + QStringLiteral("-wal"));
    QCOMPARE(contentOf(m_folder->filePath(aside.back())), log);
}

void TestModelContainer::twoDamagedFilesOfASecondAreBothKept()
{
    const LogLines lines;
    for (const char *const content : {"first", "second", "third"}) {
        writeFile(m_file, content);
        QVERIFY(makeContainer(m_file));
    }
    QStringList kept;
    for (const QString &name : files().filter(QStringLiteral(".damaged-"))) {
        kept << QString::fromUtf8(contentOf(m_folder->filePath(name)));
    }
    kept.sort();
    QCOMPARE(kept.join(u' '), QStringLiteral("first second third"));
}

void TestModelContainer::aLogWithoutItsFileIsKeptAside()
{
    const LogLines lines;
    QVERIFY(save(makeContainer(m_file), {itemAt(1, QStringLiteral("one"))}));
    QVERIFY(QFile::remove(m_file));
    writeFile(m_file + QStringLiteral("-wal"), "all that is left");
    QVERIFY(makeContainer(m_file));
    const QStringList aside = files().filter(QStringLiteral(".damaged-"));
    QCOMPARE(aside.size(), 1);
    QVERIFY(aside.front().endsWith(QLatin1String("-wal")));
    QCOMPARE(contentOf(m_folder->filePath(aside.front())), QByteArray("all that is left"));
}

void TestModelContainer::aDamagedFileStaysWhileSomeoneUsesIt()
{
    QVERIFY(save(makeContainer(m_file), {itemAt(1, QStringLiteral("one"))}));
    const LogLines lines;
    auto user = makeContainer(m_file);
    damageHeader(m_file);
    const QByteArray damaged = contentOf(m_file);
    QVERIFY(!makeContainer(m_file));
    QCOMPARE(contentOf(m_file), damaged);
    QVERIFY(files().filter(QStringLiteral(".damaged-")).isEmpty());
    user.reset();
    QVERIFY(makeContainer(m_file));
    QCOMPARE(files().filter(QStringLiteral(".damaged-")).isEmpty(), false);
}

void TestModelContainer::aStoreThatCannotBeUsedStays_data()
{
    QTest::addColumn<QByteArray>("preparation");
    QTest::addColumn<QString>("word");
    QTest::newRow("a later version") << QByteArray("PRAGMA user_version = 2") << "newer";
    QTest::newRow("something else") << QByteArray("DROP TABLE DownloadItem") << "something else";
    QTest::newRow("with a version of nobody's")
        << QByteArray("PRAGMA user_version = -7") << "something else";
    QTest::newRow("in use by another program")
        << QByteArray("PRAGMA locking_mode = EXCLUSIVE; BEGIN EXCLUSIVE") << "in use";
}

void TestModelContainer::aStoreThatCannotBeUsedStays()
{
    QFETCH(QByteArray, preparation);
    QFETCH(QString, word);
    QVERIFY(save(makeContainer(m_file), {itemAt(1, QStringLiteral("one"))}));
    std::optional<Database> other(std::in_place, m_file);
    other->execute(preparation.constData());
    const LogLines lines;
    QVERIFY(!makeContainer(m_file));
    QCOMPARE(lines.lines().size(), 1);
    QVERIFY2(lines.lines().front().contains(word), qPrintable(lines.lines().front()));
    other.reset();
    QCOMPARE(files(), QStringList(QStringLiteral("library.sqlite")));
    QVERIFY(contentOf(m_file).contains("one"));
}

void TestModelContainer::aStoreThatCannotBeWrittenStays_data()
{
    QTest::addColumn<bool>("isFolder");
    QTest::newRow("the file") << false;
    QTest::newRow("the folder") << true;
}

void TestModelContainer::aStoreThatCannotBeWrittenStays()
{
    QFETCH(bool, isFolder);
    QVERIFY(save(makeContainer(m_file), {itemAt(1, QStringLiteral("one"))}));
    const QByteArray before = contentOf(m_file);
    QFile::remove(m_file + QStringLiteral(".lock"));
    const auto everyoneReads = QFile::ReadOwner | QFile::ReadGroup | QFile::ReadOther;
    const auto everyoneEnters = everyoneReads | QFile::ExeOwner | QFile::ExeGroup | QFile::ExeOther;
    const auto everyoneWrites = QFile::WriteOwner | QFile::WriteGroup | QFile::WriteOther;
    QVERIFY(QFile::setPermissions(m_file, everyoneReads));
    QVERIFY(QFile::setPermissions(m_folder->path(),
                                  isFolder ? everyoneEnters : everyoneEnters | everyoneWrites));
    const LogLines lines;
    // The administrator may write anything.
    const bool isAdministrator = geteuid() == 0;
    QVERIFY(!isAdministrator || seteuid(nobody) == 0);
    const auto container = makeContainer(m_file);
    QVERIFY(!isAdministrator || seteuid(0) == 0);
    QFile::setPermissions(m_folder->path(), everyoneEnters | everyoneWrites);
    QVERIFY(!container);
    QCOMPARE(lines.lines().size(), 1);
    QVERIFY2(lines.lines().front().contains(QLatin1String("cannot be written")),
             qPrintable(lines.lines().front()));
    QCOMPARE(contentOf(m_file), before);
    QVERIFY(files().filter(QStringLiteral(".damaged-")).isEmpty());
}

QTEST_GUILESS_MAIN(TestModelContainer)
#include "tst_model_container.moc"
