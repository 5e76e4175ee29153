// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
// Whatever call the process is killed before, and whenever the disk becomes full: what was told to
// be saved is there, the store is sound, and no file has its final name before it is whole.
#include "library/database.h"
#include "tests/library/library_case.h"

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QSet>

using namespace veltro;
using namespace veltro::test;

namespace {

struct Told {
    QStringList saved; ///< ids
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

private:
    Told run(const QString &how, int count);
    void lookAround(const Told &told, int count);

    std::unique_ptr<QTemporaryDir> m_media;
    std::unique_ptr<QTemporaryDir> m_folder;
    QString m_file;
};

void TestKilledLibrary::initTestCase()
{
    m_media = std::make_unique<QTemporaryDir>();
    QProcess process;
    process.start(QStringLiteral("ffmpeg"),
                  QStringLiteral("-v error -f lavfi -i testsrc=duration=1:rate=5:size=160x120 "
                                 "-c:v mpeg4")
                          .split(u' ') +
                      QStringList(m_media->filePath(QStringLiteral("0.mp4"))));
    QVERIFY(process.waitForFinished(patience));
    QCOMPARE(process.exitCode(), 0);
}

void TestKilledLibrary::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
}

Told TestKilledLibrary::run(const QString &how, int count)
{
    m_folder = std::make_unique<QTemporaryDir>();
    m_file = m_folder->filePath(QStringLiteral("library.sqlite"));
    for (int number = 0; number < 3; ++number) {
        QFile::copy(m_media->filePath(QStringLiteral("0.mp4")),
                    m_folder->filePath(QStringLiteral("%1.mp4").arg(number)));
    }
    QProcess process;
    process.start(QCoreApplication::applicationDirPath() + QStringLiteral("/killed_writer"),
                  {m_file, m_folder->path(), how, QString::number(count)});
    if (!process.waitForFinished(patience)) {
        process.kill();
        process.waitForFinished();
    }
    return parse(process.readAllStandardOutput());
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
             database.number("SELECT count(*) FROM SearchKey"));
    for (const QString &id : told.saved) {
        Statement statement = database.prepare("SELECT count(*) FROM DownloadItem WHERE id = ?1");
        statement.bind(1, id);
        QVERIFY(statement.step());
        QVERIFY2(statement.integer(0) == 1, qPrintable(QString::number(count)));
    }
    for (const QString &name : QDir(m_folder->path()).entryList({QStringLiteral("*.jpg")})) {
        QFile picture(m_folder->filePath(name));
        QVERIFY(picture.open(QIODevice::ReadOnly));
        const QByteArray content = picture.readAll();
        QVERIFY2(content.startsWith("\xff\xd8\xff") && content.endsWith("\xff\xd9"),
                 qPrintable(QString::number(count)));
    }
}

void TestKilledLibrary::nothingIsLostWhereverItIsKilled()
{
    const Told whole = run(QStringLiteral("kill"), 0);
    QCOMPARE(whole.saved.size(), 3);
    QVERIFY(whole.calls > 20);
    lookAround(whole, 0);
    QSet<qsizetype> savedCounts;
    for (int count = 1; count <= whole.calls; ++count) {
        const Told told = run(QStringLiteral("kill"), count);
        QCOMPARE(told.calls, 0); // it did not come to its end
        savedCounts.insert(told.saved.size());
        lookAround(told, count);
    }
    QCOMPARE(savedCounts.size(), 3); // killed before each of the items was saved
}

void TestKilledLibrary::nothingIsLostWhenTheDiskBecomesFull()
{
    const int calls = run(QStringLiteral("full"), 0).calls;
    bool someFailed = false;
    for (int count = 1; count <= calls; count += 2) {
        const Told told = run(QStringLiteral("full"), count);
        QCOMPARE(told.saved.size() + told.failures, told.hasContainer ? 3 : 0);
        someFailed = someFailed || told.failures > 0;
        QVERIFY(QDir(m_folder->path()).entryList({QStringLiteral("*damaged*")}).isEmpty());
        lookAround(told, count);
    }
    QVERIFY(someFailed);
}

QTEST_GUILESS_MAIN(TestKilledLibrary)
#include "tst_killed_library.moc"
