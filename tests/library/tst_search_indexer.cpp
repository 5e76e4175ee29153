// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "library/download_item.h"
#include "library/search_indexer.h"

#include <QTemporaryDir>
#include <QTest>

using namespace veltro;

class TestSearchIndexer : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void initTestCase();
    void anEntryIsDescribedByWhoMadeItOrWhereItIsFrom();
    void whatAnEntryLacksStaysAbsent();
    void anEntryIsFoundByItsWordsAndKnownByItsId();

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

void TestSearchIndexer::anEntryIsFoundByItsWordsAndKnownByItsId()
{
    DownloadItem entry;
    entry.id = QUuid::createUuid();
    entry.title = QStringLiteral("Harbour at night");
    entry.durationSeconds = 12.5;
    entry.localFileURL = QUrl::fromLocalFile(QStringLiteral("/videos/harbour.mp4"));
    entry.thumbnailFileURL = QUrl::fromLocalFile(QStringLiteral("/videos/harbour.jpg"));
    indexForSearch(entry);
    SearchIndex::standard().finish();
    const auto found = SearchIndex::standard().search({QStringLiteral("night")}, 10);
    QCOMPARE(found, std::vector{searchableItem(entry)});
    QCOMPARE(QUuid::fromString(found.front().uniqueIdentifier), entry.id);
    QCOMPARE(found.front().domainIdentifier, QStringLiteral("app.veltro.app.library"));
}

QTEST_GUILESS_MAIN(TestSearchIndexer)
#include "tst_search_indexer.moc"
