// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "library/download_item.h"
#include "library/search_indexer.h"
#include "tests/library/library_case.h"

#include <QFileInfo>

using namespace veltro;
using namespace veltro::test;

class TestSearchIndexer : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void initTestCase();
    void anEntryIsDescribedByWhoMadeItOrWhereItIsFrom();
    void whatAnEntryLacksStaysAbsent();
    void whatTheIndexLacksIsFoundFromTheNextStartOn();

private:
    QTemporaryDir m_data;
};

void TestSearchIndexer::initTestCase()
{
    qputenv("XDG_DATA_HOME", m_data.path().toUtf8());
}

void TestSearchIndexer::anEntryIsDescribedByWhoMadeItOrWhereItIsFrom()
{
    DownloadItem entry;
    entry.sourceURL = QUrl(QStringLiteral("https://www.site.example:8080/watch"));
    QCOMPARE(searchableItem(entry).contentDescription, QStringLiteral("www.site.example"));
    entry.uploader = QStringLiteral("Somebody");
    const SearchableItem item = searchableItem(entry);
    QCOMPARE(item.contentDescription, QStringLiteral("Somebody"));
    QCOMPARE(item.keywords, (QStringList{QStringLiteral("video"), QStringLiteral("veltro"),
                                         QStringLiteral("Somebody")}));
}

void TestSearchIndexer::whatAnEntryLacksStaysAbsent()
{
    DownloadItem entry;
    entry.sourceURL = QUrl(QStringLiteral("data:,nowhere"));
    const SearchableItem item = searchableItem(entry);
    QVERIFY(!item.contentDescription && !item.durationSeconds);
    QVERIFY(!item.contentURL && !item.thumbnailURL);
    QCOMPARE(item.keywords, (QStringList{QStringLiteral("video"), QStringLiteral("veltro")}));
}

void TestSearchIndexer::whatTheIndexLacksIsFoundFromTheNextStartOn()
{
    const QTemporaryDir folder;
    const auto library = makeContainer(folder.filePath(QStringLiteral("library.sqlite")));
    const QString file = folder.filePath(QStringLiteral("search.sqlite"));
    SearchIndex index(file);
    constexpr int count = 1'000;
    std::vector<DownloadItem> items;
    for (int number = 0; number < count; ++number) {
        items.push_back(itemAt(number, QStringLiteral("Clip %1").arg(number)));
    }
    QVERIFY(save(library, items));
    index.indexItems({searchableItem(items[3]), searchableItem(items[700])});
    index.finish();
    QVERIFY(remove(library, {items[3].id})); // which is found on

    std::stop_source ended;
    ended.request_stop();
    indexWhatIsMissing(*library, index, ended.get_token());
    const QStringList any{QStringLiteral("clip")};
    QCOMPARE(index.search(any, 2 * count).size(), std::size_t(2));
    indexWhatIsMissing(*library, index);
    QCOMPARE(index.search(any, 2 * count).size(), std::size_t(count));
    const QString id = items[500].id.toString(QUuid::WithoutBraces);
    QCOMPARE(index.items({id}), std::vector{searchableItem(items[500])});

    const auto written = [&file] { return QFileInfo(file + QStringLiteral("-wal")).size(); };
    const qint64 before = written();
    indexWhatIsMissing(*library, index);
    QCOMPARE(written(), before);
}

QTEST_GUILESS_MAIN(TestSearchIndexer)
#include "tst_search_indexer.moc"
