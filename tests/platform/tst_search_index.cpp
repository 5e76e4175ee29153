// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/log.h"
#include "platform/search_index.h"
#include "tests/files.h"
#include "tests/rows.h"

#include <QTemporaryDir>

#include <thread>

using namespace veltro;
using test::row;

namespace {

SearchableItem videoTitled(const QString &title, const QString &identifier)
{
    SearchableItem item;
    item.uniqueIdentifier = identifier;
    item.domainIdentifier = QStringLiteral("test.domain");
    item.contentType = QStringLiteral("video/*");
    item.title = title;
    item.keywords = {QStringLiteral("video"), QStringLiteral("veltro")};
    return item;
}

QStringList identifiers(const std::vector<SearchableItem> &items)
{
    QStringList found;
    for (const SearchableItem &item : items) {
        found += item.uniqueIdentifier;
    }
    return found;
}

}

class TestSearchIndex : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void init();
    void whatWasIndexedComesBackWhole();
    void wordsAreFoundAsPeopleTypeThem_data();
    void wordsAreFoundAsPeopleTypeThem();
    void theBestMatchComesFirstThenTheNewest();
    void ofMoreThanCanBeRankedTheNewestAreShown();
    void anItemTakesThePlaceOfItsEarlierSelf();
    void nothingThatIsTypedIsASyntaxError();
    void threadsMayIndexAtTheSameTime();
    void aDamagedIndexIsKeptAsideAndBeginsAnew();
    void anIndexOfALaterVersionIsLeftAlone();
    void aPlaceThatCannotBeWrittenCostsOneLineOfTheLog();

private:
    [[nodiscard]] QString file() const { return m_folder->filePath(QStringLiteral("s.sqlite")); }
    std::unique_ptr<QTemporaryDir> m_folder;
};

void TestSearchIndex::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
}

void TestSearchIndex::whatWasIndexedComesBackWhole()
{
    SearchableItem full =
        videoTitled(QStringLiteral("A 'quoted' \"title\" 🎬"), QStringLiteral("1"));
    full.contentDescription = QStringLiteral("Somebody");
    full.durationSeconds = 61.25;
    full.contentURL = QUrl::fromLocalFile(QStringLiteral("/videos/a b#c?.mp4"));
    full.thumbnailURL = QUrl::fromLocalFile(QStringLiteral("/thumbs/é.jpg"));
    full.keywords += QStringLiteral("Some, body");
    const SearchableItem bare = videoTitled(QString(), QStringLiteral("2"));
    {
        SearchIndex writing(file());
        writing.indexItems({full, bare});
    }
    const SearchIndex index(file());
    QCOMPARE(index.search({QStringLiteral("quoted")}, 10), std::vector{full});
    QCOMPARE(index.items({QStringLiteral("2"), QStringLiteral("none"), QStringLiteral("1")}),
             (std::vector{bare, full}));
}

void TestSearchIndex::wordsAreFoundAsPeopleTypeThem_data()
{
    QTest::addColumn<QString>("title");
    QTest::addColumn<QString>("typed");
    QTest::addColumn<bool>("isFound");
    row("the beginning of a word", "Grand tour of Norway", "nor", true);
    row("every term counts", "Grand tour of Norway", "tour nor", true);
    row("the order of terms does not", "Grand tour of Norway", "nor grand", true);
    row("one term that is missing", "Grand tour of Norway", "tour sweden", false);
    row("the inside of a word is no beginning", "Grand tour", "our", false);
    row("accents typed or not", "Été à la plage", "ete a", true);
    row("accents in the term alone", "Ete", "été", true);
    row("case beyond the first alphabet", "ΟΔΟΣ", "οδος", true);
    row("a letter that grows when folded", "Große Straße", "STRASSE", true);
    row("letters with strokes", "Łódź Ørsted", "lodz orsted", true);
    row("full-width letters", "Ｖｉｄｅｏｓ", "videos", true);
    row("the middle of a title without blanks", "東京の夜景", "夜景", true);
    row("letters of such a title in another order", "東京の夜景", "景夜", false);
    row("marks that tell kana apart", "ガラス", "カラス", false);
    row("vowels that are written as marks", "हिन्दी गीत", "हिन्दी", true);
    row("a hyphen separates", "spider-man", "man", true);
    row("a name with a dot, as typed", "node.js in a day", "node.js", true);
    row("a keyword", "x", "velt", true);
    row("digits", "Top 10 of 2024", "2024", true);
}

void TestSearchIndex::wordsAreFoundAsPeopleTypeThem()
{
    QFETCH(const QString, title);
    QFETCH(const QString, typed);
    SearchIndex index(file());
    index.indexItems({videoTitled(title, QStringLiteral("1"))});
    index.finish();
    QTEST(!index.search(typed.split(QLatin1Char(' ')), 10).empty(), "isFound");
}

void TestSearchIndex::theBestMatchComesFirstThenTheNewest()
{
    SearchIndex index(file());
    SearchableItem aside = videoTitled(QStringLiteral("Something else"), QStringLiteral("aside"));
    aside.contentDescription = QStringLiteral("Harbour channel");
    index.indexItems({aside, videoTitled(QStringLiteral("Harbour"), QStringLiteral("older")),
                      videoTitled(QStringLiteral("Harbour"), QStringLiteral("newer"))});
    index.finish();
    const QStringList terms{QStringLiteral("harbour")};
    QCOMPARE(
        identifiers(index.search(terms, 10)),
        (QStringList{QStringLiteral("newer"), QStringLiteral("older"), QStringLiteral("aside")}));
    QCOMPARE(index.search(terms, 2).size(), size_t(2));
}

/// To rank all that begins with a letter would take longer than a person types.
void TestSearchIndex::ofMoreThanCanBeRankedTheNewestAreShown()
{
    SearchIndex index(file());
    std::vector<SearchableItem> items;
    for (int number = 0; number < 6'000; ++number) {
        items.push_back(videoTitled(QStringLiteral("Clip"), QString::number(number)));
    }
    index.indexItems(std::move(items));
    index.finish();
    QCOMPARE(identifiers(index.search({QStringLiteral("v")}, 3)),
             (QStringList{QStringLiteral("5999"), QStringLiteral("5998"), QStringLiteral("5997")}));
}

void TestSearchIndex::anItemTakesThePlaceOfItsEarlierSelf()
{
    SearchIndex index(file());
    index.indexItems({videoTitled(QStringLiteral("before"), QStringLiteral("1"))});
    index.indexItems({videoTitled(QStringLiteral("after"), QStringLiteral("1"))});
    index.finish();
    QVERIFY(index.search({QStringLiteral("before")}, 10).empty());
    QCOMPARE(identifiers(index.search({QStringLiteral("after")}, 10)),
             QStringList{QStringLiteral("1")});
}

void TestSearchIndex::nothingThatIsTypedIsASyntaxError()
{
    QStringList logged;
    setLogSink([&](std::string_view line) {
        logged += QString::fromUtf8(line.data(), qsizetype(line.size()));
    });
    SearchIndex index(file());
    index.indexItems({videoTitled(QStringLiteral("and or not near title"), QStringLiteral("1"))});
    index.finish();
    for (const char *const typed : {"\"", "*", "AND", "NOT", "NEAR(", "title:", "-", "^and", "{a}",
                                    "'; DROP TABLE items", "a+b", "", " ", "\\", "(", "%", "_"}) {
        (void)index.search({QString::fromLatin1(typed)}, 10);
        (void)index.search({QStringLiteral("and"), QString::fromLatin1(typed)}, 10);
    }
    QCOMPARE(identifiers(index.search({QStringLiteral("\"and\""), QStringLiteral("*")}, 10)),
             QStringList{QStringLiteral("1")});
    QVERIFY(index.search({QStringLiteral("*")}, 10).empty());
    setLogSink({});
    QCOMPARE(logged, QStringList());
}

void TestSearchIndex::threadsMayIndexAtTheSameTime()
{
    constexpr int threads = 4;
    constexpr int each = 50;
    SearchIndex index(file());
    SearchIndex other(file()); // as a second process has it
    std::vector<std::thread> running;
    for (int t = 0; t < threads; ++t) {
        running.emplace_back([&, t] {
            for (int i = 0; i < each; ++i) {
                (t % 2 ? index : other)
                    .indexItems({videoTitled(QStringLiteral("common"),
                                             QStringLiteral("%1-%2").arg(t).arg(i))});
            }
        });
    }
    for (std::thread &thread : running) {
        thread.join();
    }
    index.finish();
    other.finish();
    QCOMPARE(index.search({QStringLiteral("common")}, 1000).size(), size_t(threads * each));
}

void TestSearchIndex::aDamagedIndexIsKeptAsideAndBeginsAnew()
{
    QVERIFY(test::writeFile(file(), QByteArray("this is no database. ").repeated(1000)));
    QStringList logged;
    setLogSink([&](std::string_view line) {
        logged += QString::fromUtf8(line.data(), qsizetype(line.size()));
    });
    SearchIndex index(file());
    QVERIFY(index.search({QStringLiteral("anything")}, 10).empty());
    index.indexItems({videoTitled(QStringLiteral("fresh"), QStringLiteral("1"))});
    index.finish();
    setLogSink({});
    QCOMPARE(index.search({QStringLiteral("fresh")}, 10).size(), size_t(1));
    const QDir folder(m_folder->path());
    const QStringList kept = folder.entryList({QStringLiteral("s.sqlite.damaged-*")});
    QCOMPARE(kept.size(), 1);
    QVERIFY(test::contentOf(folder.filePath(kept.value(0))).startsWith("this is no database."));
    QCOMPARE(logged.size(), 2); // one for the reader, one for the writer
}

void TestSearchIndex::anIndexOfALaterVersionIsLeftAlone()
{
    {
        SearchIndex index(file());
        index.indexItems({videoTitled(QStringLiteral("old"), QStringLiteral("1"))});
    }
    constexpr qsizetype userVersion = 60; // where the format keeps it, most significant byte first
    const QByteArray before =
        test::contentOf(file()).replace(userVersion, 4, QByteArray("\0\0\0\x63", 4));
    QVERIFY(test::writeFile(file(), before));

    setLogSink([](std::string_view) {});
    SearchIndex index(file());
    index.indexItems({videoTitled(QStringLiteral("new"), QStringLiteral("2"))});
    index.finish();
    QVERIFY(index.search({QStringLiteral("old")}, 10).empty());
    setLogSink({});
    QCOMPARE(test::contentOf(file()), before);
}

void TestSearchIndex::aPlaceThatCannotBeWrittenCostsOneLineOfTheLog()
{
    QStringList logged;
    setLogSink([&](std::string_view line) {
        logged += QString::fromUtf8(line.data(), qsizetype(line.size()));
    });
    SearchIndex index(m_folder->filePath(QStringLiteral("no/such/folder/s.sqlite")));
    index.indexItems({videoTitled(QStringLiteral("lost"), QStringLiteral("1"))});
    index.finish();
    setLogSink({});
    QCOMPARE(logged.size(), 1);
    QVERIFY(index.search({QStringLiteral("lost")}, 10).empty());
}

QTEST_GUILESS_MAIN(TestSearchIndex)
#include "tst_search_index.moc"
