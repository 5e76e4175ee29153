// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "coordination/download_progress_state.h"
#include "library/cookie_jar.h"
#include "library/download_storage.h"
#include "library/search_indexer.h"
#include "platform/user_folders.h"
#include "tests/library/awaiting.h"
#include "tests/library/library_case.h"
#include "tests/platform/ffmpeg/stock_tool.h"

#include <QSize>

#include <cmath>
#include <sys/stat.h>
#include <system_error>

using namespace veltro;
using namespace veltro::test;

namespace {

/// The width and height that a JPEG's frame header gives; nothing for other content.
std::optional<QSize> jpegSize(const QByteArray &jpeg)
{
    const auto byte = [&jpeg](qsizetype place) { return static_cast<uchar>(jpeg.at(place)); };
    qsizetype place = 2;
    if (!jpeg.startsWith("\xff\xd8\xff") || !jpeg.endsWith("\xff\xd9")) {
        return std::nullopt;
    }
    while (place + 9 < jpeg.size() && byte(place) == 0xff) {
        const int marker = byte(place + 1);
        if (marker >= 0xc0 && marker <= 0xc2) {
            return QSize(byte(place + 7) * 256 + byte(place + 8),
                         byte(place + 5) * 256 + byte(place + 6));
        }
        place += 2 + byte(place + 2) * 256 + byte(place + 3);
    }
    return std::nullopt;
}

}

class TestDownloadStorage : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void initTestCase();
    void init();
    void aFinishedDownloadBecomesAnItem();
    void aFileThatIsGoneStillBecomesAnItem();
    void aDownloadWithoutAFileIsNotRecorded();
    void thePictureBesideTheMediaIsTaken_data();
    void thePictureBesideTheMediaIsTaken();
    void aPictureIsMadeSmallEnoughAndWhole();
    void whatIsNoMediaHasNeither();
    void cookiesAreThoseOfTheExactHost();
    void aFolderForCookiesThatCannotBeMadeIsAnError();

private:
    QString path(const QString &name) const { return m_folder->filePath(name); }
    void makeMovie(const QString &name, const QString &size = QStringLiteral("320x240")) const
    {
        QVERIFY(ffmpeg::makeMedia(
            QStringLiteral("-f lavfi -i testsrc=duration=2:rate=10:size=%1 -c:v mpeg4 \"%2\"")
                .arg(size, name),
            m_folder->path()));
    }
    /// Records a download that has saved this file; the item that the store has then.
    std::optional<DownloadItem> record(const QString &title, const QString &file);

    std::unique_ptr<QTemporaryDir> m_data;
    std::unique_ptr<QTemporaryDir> m_folder;
    DownloadStorage m_storage;
};

void TestDownloadStorage::initTestCase()
{
    m_data = std::make_unique<QTemporaryDir>();
    qputenv("XDG_DATA_HOME", QFile::encodeName(m_data->path()));
}

void TestDownloadStorage::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
}

std::optional<DownloadItem> TestDownloadStorage::record(const QString &title, const QString &file)
{
    auto progress = std::make_shared<DownloadProgressState>(
        DownloadOrder{QUuid::createUuid(), QUrl(QStringLiteral("https://example.com/page?a=b#c")),
                      QStringLiteral("22"), QStringLiteral("720p mp4")});
    progress->setTitle(title);
    progress->setLocalFileURL(QUrl::fromLocalFile(path(file)));
    await(m_storage.record(progress));
    LibraryItemsModel model;
    model.setLimit(1);
    model.setContainer(DownloadStorage::makeContainer());
    [&] { QTRY_VERIFY_WITH_TIMEOUT(model.isLoaded(), patience); }();
    return model.item(model.idAt(0));
}

void TestDownloadStorage::aFinishedDownloadBecomesAnItem()
{
    makeMovie(QStringLiteral("A movie [x].mp4"));
    const QDateTime before = QDateTime::currentDateTimeUtc();
    const auto item = record(QStringLiteral("A movie"), QStringLiteral("A movie [x].mp4"));
    QVERIFY(item);
    QVERIFY(!item->id.isNull());
    QCOMPARE(item->sourceURL, QUrl(QStringLiteral("https://example.com/page?a=b#c")));
    QCOMPARE(item->title, QStringLiteral("A movie"));
    QCOMPARE(item->formatLabel, QStringLiteral("720p mp4"));
    QCOMPARE(item->stateRaw, QStringLiteral("done"));
    QVERIFY(item->localFileURL == QUrl::fromLocalFile(path(QStringLiteral("A movie [x].mp4"))));
    QCOMPARE(item->fileSizeBytes, QFileInfo(path(QStringLiteral("A movie [x].mp4"))).size());
    QVERIFY(item->thumbnailFileURL == QUrl::fromLocalFile(path(QStringLiteral("A movie [x].jpg"))));
    QVERIFY(item->durationSeconds && std::abs(*item->durationSeconds - 2) < 0.11);
    QVERIFY(item->createdAt.msecsTo(QDateTime::currentDateTimeUtc()) >= 0);
    QVERIFY(before.msecsTo(item->createdAt) >= 0 && item->completedAt >= item->createdAt);
    QVERIFY(!item->uploader && !item->failureReason && !item->cookieHost);
    SearchIndex::standard().finish();
    const auto indexed = SearchIndex::standard().items({item->id.toString(QUuid::WithoutBraces)});
    QCOMPARE(indexed, std::vector{searchableItem(*item)});
}

void TestDownloadStorage::aFileThatIsGoneStillBecomesAnItem()
{
    const auto item = record(QStringLiteral("gone"), QStringLiteral("gone.mp4"));
    QVERIFY(item);
    QCOMPARE(item->title, QStringLiteral("gone"));
    QCOMPARE(item->fileSizeBytes, qint64{0});
    QVERIFY(!item->thumbnailFileURL && !item->durationSeconds);
    QVERIFY(QDir(m_folder->path()).isEmpty());
}

void TestDownloadStorage::aDownloadWithoutAFileIsNotRecorded()
{
    const auto before = record(QStringLiteral("before"), QStringLiteral("a.mp4"));
    auto progress = std::make_shared<DownloadProgressState>(DownloadOrder{});
    await(m_storage.record(progress));
    LibraryItemsModel model;
    model.setContainer(DownloadStorage::makeContainer());
    QTRY_VERIFY_WITH_TIMEOUT(model.isLoaded(), patience);
    QCOMPARE(model.idAt(0), before->id);
}

void TestDownloadStorage::thePictureBesideTheMediaIsTaken_data()
{
    QTest::addColumn<QString>("pictures");
    QTest::addColumn<QString>("taken");
    row("a webp", "clip.webp", "clip.webp");
    row("a jpg before a webp", "clip.webp clip.jpg", "clip.jpg");
    row("all four", "clip.webp clip.png clip.jpeg clip.jpg", "clip.jpg");
    row("a png before a webp", "clip.webp clip.png", "clip.png");
    row("not another file's", "clip.x.jpg other.png clip.gif clip.mp4.jpg", "");
}

void TestDownloadStorage::thePictureBesideTheMediaIsTaken()
{
    QFETCH(QString, pictures);
    QFETCH(QString, taken);
    for (const QString &picture : pictures.split(u' ')) {
        QVERIFY(writeFile(path(picture), "any content"));
    }
    const auto picture =
        await(m_storage.thumbnail(QUrl::fromLocalFile(path(QStringLiteral("clip.mp4")))));
    QCOMPARE(picture ? QFileInfo(picture->toLocalFile()).fileName() : QString(), taken);
}

void TestDownloadStorage::aPictureIsMadeSmallEnoughAndWhole()
{
    makeMovie(QStringLiteral("wide.v2.mp4"), QStringLiteral("1600x400"));
    const auto picture =
        await(m_storage.thumbnail(QUrl::fromLocalFile(path(QStringLiteral("wide.v2.mp4")))));
    QVERIFY(picture == QUrl::fromLocalFile(path(QStringLiteral("wide.v2.jpg"))));
    QVERIFY(jpegSize(contentOf(picture->toLocalFile())) == QSize(800, 200));
    QCOMPARE(QDir(m_folder->path()).entryList(QDir::Files | QDir::Hidden).size(), 2);
}

void TestDownloadStorage::whatIsNoMediaHasNeither()
{
    QVERIFY(writeFile(path(QStringLiteral("text.mp4")), "no media at all"));
    const QUrl text = QUrl::fromLocalFile(path(QStringLiteral("text.mp4")));
    QVERIFY(!await(m_storage.thumbnail(text)));
    QVERIFY(!await(m_storage.duration(text)));
    const QUrl folder = QUrl::fromLocalFile(m_folder->path());
    QVERIFY(!await(m_storage.duration(folder)));
    QCOMPARE(QDir(m_folder->path()).entryList(QDir::Files).size(), 1);
}

void TestDownloadStorage::cookiesAreThoseOfTheExactHost()
{
    const QString folder = cookiesDirectory().toLocalFile();
    QCOMPARE(folder, dataFolder() + QStringLiteral("/cookies"));
    struct stat status = {};
    QCOMPARE(stat(QFile::encodeName(folder).constData(), &status), 0);
    QCOMPARE(status.st_mode & 0777, 0700U);
    for (const char *const host : {"example.com", "www.other.example", "127.0.0.1"}) {
        QFile file(folder + u'/' + QLatin1String(host) + QStringLiteral(".cookies.txt"));
        QVERIFY(file.open(QIODevice::WriteOnly));
    }
    const auto find = [this](const QString &host) { return m_storage.cookieFile(host); };
    QVERIFY(find(QStringLiteral("example.com")) ==
            QUrl::fromLocalFile(folder + QStringLiteral("/example.com.cookies.txt")));
    QVERIFY(find(QStringLiteral("www.other.example")));
    QVERIFY(find(QUrl(QStringLiteral("http://127.0.0.1:8080/x")).host()));
    QVERIFY(!find(QStringLiteral("www.example.com")));
    QVERIFY(!find(QStringLiteral("other.example")));
    QVERIFY(!find(QStringLiteral("sub.example.com")));
    QVERIFY(!find(QUrl(QStringLiteral("file:///etc/passwd")).host()));
    QVERIFY(!find(QStringLiteral("../cookies/example.com")));
    QVERIFY(!m_storage.cookieFile(std::nullopt));
}

void TestDownloadStorage::aFolderForCookiesThatCannotBeMadeIsAnError()
{
    QDir(dataFolder() + QStringLiteral("/cookies")).removeRecursively();
    QFile obstacle(dataFolder() + QStringLiteral("/cookies"));
    QVERIFY(obstacle.open(QIODevice::WriteOnly));
    QVERIFY_THROWS_EXCEPTION(std::system_error,
                             (void)m_storage.cookieFile(QStringLiteral("example.com")));
    QVERIFY(!m_storage.cookieFile(std::nullopt));
    QVERIFY(obstacle.remove());
}

QTEST_GUILESS_MAIN(TestDownloadStorage)
#include "tst_download_storage.moc"
