// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
// A batch of pages of every kind, all the way: what is saved, and what is said of it to the user of
// another program and to the desktop's search.
#include "library/search_indexer.h"
#include "tests/coordination/coordinator_bench.h"
#include "tests/platform/notification_daemon.h"

#include <QFileInfo>
#include <QSignalSpy>
#include <QTest>

using namespace veltro;

using Kind = ItemState::Kind;

namespace {

/// What is to become of a page.
struct Page {
    QString path;
    Kind ending;
    bool hasPicture = true; ///< the file has a picture, so the library has a thumbnail
};

std::vector<Page> mixedPages()
{
    return {{QStringLiteral("/plain"), Kind::done},
            {QStringLiteral("/jsonld"), Kind::done}, // merged, with subtitles and a thumbnail
            {QStringLiteral("/missing/media"), Kind::failed},
            {QStringLiteral("/codec/mpeg4-mp3"), Kind::done}, // re-encoded
            {QStringLiteral("/drm/hls"), Kind::failed},
            {QStringLiteral("/audio/mp3"), Kind::done, false},
            {QStringLiteral("/thumbnail/webp"), Kind::done},
            {QStringLiteral("/status/503"), Kind::failed},
            {QStringLiteral("/title/markup"), Kind::done},
            {QStringLiteral("/title/slashes"), Kind::done},
            {QStringLiteral("/hostile/media-desktop"), Kind::failed},
            {QStringLiteral("/plain"), Kind::done}}; // the same once more: a second entry
}

}

class TestBatchToLibrary : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void initTestCase();
    void everyRecordEndsAsItsPageDeserves();
    void theLibraryHasWhatWasSavedAndNothingElse();
    void everyFileOfTheLibraryIsThereWithItsFacts();
    void onlyWhatWasSavedIsAnnounced();
    void whatWasSavedIsFoundByTheDesktop();
    void nothingIsLeftHalfDone();
    void cleanupTestCase();

private:
    const std::vector<Page> m_pages = mixedPages();
    NotificationDaemon m_daemon;
    std::unique_ptr<CoordinatorBench> m_bench;
    std::vector<MacAppStore::Record> m_done;
};

void TestBatchToLibrary::initTestCase()
{
    constexpr int patience = 120'000; // ms, for a dozen pages
    QVERIFY(m_daemon.prepare());
    QVERIFY(m_daemon.start("no"));
    m_bench = std::make_unique<CoordinatorBench>(std::make_unique<DBusNoticeCenter>());
    m_bench->isActive = false;
    QString lines;
    for (const Page &page : m_pages) {
        lines += m_bench->site.url(page.path).toString() + u'\n';
    }
    m_bench->store().submitBatch(lines);
    ActiveDownloads &downloads = m_bench->downloads();
    const auto count = static_cast<int>(m_pages.size());
    QTRY_VERIFY_WITH_TIMEOUT(downloads.finishedCount() == count &&
                                 m_bench->store().inFlightTask()->isFinished(),
                             patience);
    for (int row = 0; row < downloads.count(); ++row) {
        if (downloads.record(row)->state().kind == Kind::done) {
            m_done.push_back(downloads.record(row));
        }
    }
}

void TestBatchToLibrary::everyRecordEndsAsItsPageDeserves()
{
    for (std::size_t row = 0; row < m_pages.size(); ++row) {
        const DownloadProgressState &record = *m_bench->downloads().record(int(row));
        const QString story = m_pages[row].path + u' ' + record.state().text;
        QCOMPARE(record.url(), m_bench->site.url(m_pages[row].path));
        QVERIFY2(record.state().kind == m_pages[row].ending, qPrintable(story));
        QCOMPARE(record.state().text.isEmpty(), record.state().kind == Kind::done);
    }
}

void TestBatchToLibrary::theLibraryHasWhatWasSavedAndNothingElse()
{
    const std::vector<DownloadItem> items = m_bench->savedItems();
    QCOMPARE(items.size(), m_done.size());
    QSet<QUuid> ids;
    for (std::size_t index = 0; index < items.size(); ++index) {
        const DownloadProgressState &record = *m_done[index];
        QCOMPARE(items[index].title, record.title());
        QCOMPARE(items[index].sourceURL, record.url());
        QCOMPARE(items[index].formatLabel, record.formatLabel());
        QCOMPARE(items[index].localFileURL, record.localFileURL());
        QCOMPARE(items[index].stateRaw, QStringLiteral("done"));
        ids.insert(items[index].id);
    }
    QCOMPARE(std::size_t(ids.size()), items.size());
}

void TestBatchToLibrary::everyFileOfTheLibraryIsThereWithItsFacts()
{
    for (const DownloadItem &item : m_bench->savedItems()) {
        const QFileInfo file(item.localFileURL->toLocalFile());
        QVERIFY2(file.isFile(), qPrintable(file.filePath()));
        QCOMPARE(file.absolutePath(), downloadsDirectory().toLocalFile());
        QCOMPARE(item.fileSizeBytes, file.size());
        QVERIFY2(item.durationSeconds.value_or(0) > 0, qPrintable(item.title));
        const auto page = std::find_if(m_pages.begin(), m_pages.end(), [&](const Page &candidate) {
            return m_bench->site.url(candidate.path) == item.sourceURL;
        });
        QVERIFY(page != m_pages.end());
        QVERIFY2(item.thumbnailFileURL.has_value() == page->hasPicture, qPrintable(item.title));
        if (item.thumbnailFileURL) {
            const QFileInfo picture(item.thumbnailFileURL->toLocalFile());
            QVERIFY2(picture.size() > 0, qPrintable(picture.filePath()));
        }
    }
}

void TestBatchToLibrary::onlyWhatWasSavedIsAnnounced()
{
    QList<ShownNotice> expected;
    for (const MacAppStore::Record &record : m_done) {
        expected.append({QStringLiteral("Saved to your library"), record->title(),
                         QStringLiteral("transfer.complete")});
    }
    // Posting is nobody's to wait for.
    QTRY_COMPARE_WITH_TIMEOUT(m_daemon.takeShown(), expected, CoordinatorBench::patience);
    QCOMPARE(m_bench->workspace.ticks, int(m_done.size()));
    QCOMPARE(m_bench->workspace.beeps, int(m_pages.size() - m_done.size()));
    QCOMPARE(m_bench->store().completedToastValue().id, m_done.back()->id());
    QVERIFY(!m_bench->store().showEngineError());
}

void TestBatchToLibrary::whatWasSavedIsFoundByTheDesktop()
{
    const SearchIndex &index = SearchIndex::standard();
    SearchIndex::standard().finish();
    const std::vector<DownloadItem> items = m_bench->savedItems();
    for (const DownloadItem &item : items) {
        const auto found = index.search(item.title.split(u' '), int(items.size()));
        QVERIFY2(std::find(found.begin(), found.end(), searchableItem(item)) != found.end(),
                 qPrintable(item.title));
    }
    // All entries have this word, and there are no others.
    QCOMPARE(index.search({QStringLiteral("veltro")}, int(m_pages.size())).size(), items.size());
}

void TestBatchToLibrary::nothingIsLeftHalfDone()
{
    QVERIFY(!m_bench->engine.hasRuns());
    const QStringList files = QDir(downloadsDirectory().toLocalFile()).entryList(QDir::Files);
    for (const QString &name : files) {
        QVERIFY2(!name.endsWith(QStringLiteral(".part")) &&
                     !name.contains(QStringLiteral(".temp.")),
                 qPrintable(name));
    }
    m_bench->store().clearFinished();
    QCOMPARE(m_bench->downloads().count(), 0);
}

void TestBatchToLibrary::cleanupTestCase()
{
    m_done.clear();
    m_bench.reset();
}

QTEST_GUILESS_MAIN(TestBatchToLibrary)
#include "tst_batch_to_library.moc"
