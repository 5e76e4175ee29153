// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "library/database.h"
#include "platform/serial_queue.h"
#include "tests/library/library_case.h"
#include "tests/rows.h"

#include <QAbstractItemModelTester>
#include <QRandomGenerator>
#include <QSignalSpy>

#include <algorithm>

using namespace veltro;
using namespace veltro::test;

namespace {

/// Shows what a view would: the ids, kept up by the signals alone.
class Mirror : public QObject {
public:
    explicit Mirror(LibraryItemsModel &model) : m_model(model)
    {
        insert(0, model.rowCount() - 1);
        connect(&model, &QAbstractItemModel::modelReset, this, [this] {
            ++resets;
            ids.clear();
            insert(0, m_model.rowCount() - 1);
        });
        connect(&model, &QAbstractItemModel::rowsInserted, this,
                [this](const QModelIndex &, int first, int last) { insert(first, last); });
        connect(&model, &QAbstractItemModel::rowsRemoved, this,
                [this](const QModelIndex &, int first, int last) {
                    ids.erase(ids.begin() + first, ids.begin() + last + 1);
                });
    }

    QList<QUuid> ids;
    int resets = 0;

private:
    void insert(int first, int last)
    {
        for (int row = first; row <= last; ++row) {
            ids.insert(row, m_model.idAt(row));
        }
    }

    LibraryItemsModel &m_model;
};

std::vector<DownloadItem> numbered(int count)
{
    std::vector<DownloadItem> items;
    for (int number = 0; number < count; ++number) {
        items.push_back(itemAt(number, QStringLiteral("Clip %1").arg(number)));
    }
    return items;
}

/// The language of the user, for as long as it lives.
class Language {
public:
    explicit Language(const QLocale &locale) { QLocale::setDefault(locale); }
    ~Language() { QLocale::setDefault(QLocale::c()); }
    Language(const Language &) = delete;
    Language &operator=(const Language &) = delete;
};

}

class TestLibraryItemsModel : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void init()
    {
        QLocale::setDefault(QLocale::c());
        m_folder = std::make_unique<QTemporaryDir>();
        m_file = m_folder->filePath(QStringLiteral("library.sqlite"));
        m_container = makeContainer(m_file);
        m_other = makeContainer(m_file);
    }
    void theNewestItemIsFirst();
    void itemsCompletedAtOnceKeepOneOrder();
    void aLimitedListKeepsToTheNewest();
    void rowsComeAndGoOneByOneWhicheverContainerWrites();
    void anItemSavedAgainStaysInItsRowOrMoves();
    void whatIsWrittenWhileTheListFillsIsNotMissed();
    void manyItemsSavedAtOnceAllAppear();
    void anItemIsFoundByTitleOrUploader_data();
    void anItemIsFoundByTitleOrUploader();
    void keysOfAnotherLanguageAreMadeAgain();
    void keysThatDoNotFitAreMadeAgain_data();
    void keysThatDoNotFitAreMadeAgain();
    void theLastOfManySearchesIsAnswered();
    void aListThatGoesAwayWhileItFillsDoesNoHarm();
    void aListWithoutAContainerIsEmpty();
    void theListIsWhatAPlainLookAtTheStoreWouldShow();

private:
    std::unique_ptr<LibraryItemsModel> loadedModel(const QString &search = {})
    {
        auto model = std::make_unique<LibraryItemsModel>();
        model->setSearch(search);
        model->setContainer(m_container);
        [&] { QTRY_VERIFY_WITH_TIMEOUT(model->isLoaded(), patience); }();
        return model;
    }

    std::unique_ptr<QTemporaryDir> m_folder;
    QString m_file;
    std::shared_ptr<ModelContainer> m_container;
    std::shared_ptr<ModelContainer> m_other;
};

void TestLibraryItemsModel::theNewestItemIsFirst()
{
    DownloadItem never = itemAt(9, QStringLiteral("never completed"));
    never.completedAt.reset();
    QVERIFY(
        save(m_container, {itemAt(2, QStringLiteral("middle")), never,
                           itemAt(3, QStringLiteral("new")), itemAt(1, QStringLiteral("old"))}));
    const auto model = loadedModel();
    const QStringList expected{QStringLiteral("new"), QStringLiteral("middle"),
                               QStringLiteral("old"), QStringLiteral("never completed")};
    QCOMPARE(titlesOf(*model), expected);
    QCOMPARE(model->index(0, 0).data(LibraryItemsModel::hostRole).toString(),
             QStringLiteral("example.com"));
    QVERIFY(!model->index(0, 0).data(LibraryItemsModel::durationSecondsRole).isValid());
    QCOMPARE(model->rowOf(model->idAt(2)), 2);
    QCOMPARE(model->rowOf(QUuid::createUuid()), -1);
    QVERIFY(model->idAt(4).isNull());
}

void TestLibraryItemsModel::itemsCompletedAtOnceKeepOneOrder()
{
    std::vector<DownloadItem> items;
    for (int number = 0; number < 300; ++number) {
        items.push_back(itemAt(5, QString::number(number)));
    }
    QVERIFY(save(m_container, items));
    const auto first = loadedModel();
    QVERIFY(save(m_other, {itemAt(5, QStringLiteral("last"))}));
    QTRY_COMPARE_WITH_TIMEOUT(first->count(), 301, patience);
    QCOMPARE(titlesOf(*first).front(), QStringLiteral("last"));
    QCOMPARE(titlesOf(*first), titlesOf(*loadedModel()));
}

void TestLibraryItemsModel::aLimitedListKeepsToTheNewest()
{
    const std::vector<DownloadItem> items = numbered(10);
    QVERIFY(save(m_container, items));
    LibraryItemsModel model;
    const QAbstractItemModelTester tester(&model);
    model.setLimit(3);
    model.setContainer(m_container);
    const auto shows = [&](const QString &titles) { return titlesOf(model).join(u',') == titles; };
    QTRY_VERIFY_WITH_TIMEOUT(shows(QStringLiteral("Clip 9,Clip 8,Clip 7")), patience);
    QSignalSpy resets(&model, &QAbstractItemModel::modelReset);
    QVERIFY(save(m_other, {itemAt(100, QStringLiteral("new"))}));
    QTRY_VERIFY_WITH_TIMEOUT(shows(QStringLiteral("new,Clip 9,Clip 8")), patience);
    QVERIFY(remove(m_other, {items[9].id}));
    QTRY_VERIFY_WITH_TIMEOUT(shows(QStringLiteral("new,Clip 8,Clip 7")), patience);
    QVERIFY(save(m_other, {itemAt(-1, QStringLiteral("too old to show"))}));
    QVERIFY(save(m_other, {itemAt(101, QStringLiteral("newer"))}));
    QTRY_VERIFY_WITH_TIMEOUT(shows(QStringLiteral("newer,new,Clip 8")), patience);
    QCOMPARE(resets.count(), 0);
}

void TestLibraryItemsModel::rowsComeAndGoOneByOneWhicheverContainerWrites()
{
    const std::vector<DownloadItem> items = numbered(1'000);
    QVERIFY(save(m_container, items));
    const auto model = loadedModel();
    const QAbstractItemModelTester tester(model.get());
    QSignalSpy inserted(model.get(), &QAbstractItemModel::rowsInserted);
    QSignalSpy removed(model.get(), &QAbstractItemModel::rowsRemoved);
    QSignalSpy resets(model.get(), &QAbstractItemModel::modelReset);
    QVERIFY(save(m_container, {itemAt(5'000, QStringLiteral("own"))}));
    QVERIFY(save(m_other, {itemAt(6'000, QStringLiteral("the other's"))}));
    QTRY_COMPARE_WITH_TIMEOUT(model->count(), 1'002, patience);
    QCOMPARE(titlesOf(*model).mid(0, 3).join(u','), QStringLiteral("the other's,own,Clip 999"));
    QCOMPARE(inserted.count(), 2);
    QVERIFY(remove(m_other, {items[10].id, items[11].id, items[500].id}));
    QTRY_COMPARE_WITH_TIMEOUT(model->count(), 999, patience);
    QCOMPARE(removed.count(), 2); // two that stood together, and one
    QVERIFY(!titlesOf(*model).contains(QStringLiteral("Clip 500")));
    QCOMPARE(resets.count(), 0);
    QCOMPARE(model->total(), 999);
}

void TestLibraryItemsModel::anItemSavedAgainStaysInItsRowOrMoves()
{
    std::vector<DownloadItem> items = numbered(3);
    QVERIFY(save(m_container, items));
    const auto model = loadedModel();
    QSignalSpy changed(model.get(), &QAbstractItemModel::dataChanged);
    items[1].title = QStringLiteral("renamed");
    QVERIFY(save(m_other, {items[1]}));
    QTRY_COMPARE_WITH_TIMEOUT(changed.count(), 1, patience);
    QCOMPARE(titlesOf(*model).join(u','), QStringLiteral("Clip 2,renamed,Clip 0"));
    items[1].completedAt = items[2].completedAt->addSecs(1);
    QVERIFY(save(m_other, {items[1]}));
    QTRY_COMPARE_WITH_TIMEOUT(titlesOf(*model).join(u','), QStringLiteral("renamed,Clip 2,Clip 0"),
                              patience);
    QCOMPARE(model->total(), 3);
}

void TestLibraryItemsModel::whatIsWrittenWhileTheListFillsIsNotMissed()
{
    const std::vector<DownloadItem> items = numbered(12'000);
    QVERIFY(save(m_container, items));
    LibraryItemsModel model;
    const Mirror mirror(model);
    model.setContainer(m_container);
    QVERIFY(
        save(m_other, {itemAt(20'000, QStringLiteral("new")), itemAt(-1, QStringLiteral("old"))}));
    QVERIFY(remove(m_other, {items[0].id, items[6'000].id, items.back().id}));
    QTRY_VERIFY_WITH_TIMEOUT(model.isLoaded() && model.total() == 11'999, patience);
    QCOMPARE(model.idAt(model.count() - 2), items[1].id);
    QCOMPARE(titlesOf(model).back(), QStringLiteral("old"));
    QCOMPARE(mirror.ids.size(), model.count());
    QCOMPARE(mirror.ids.back(), model.idAt(model.count() - 1));
}

void TestLibraryItemsModel::manyItemsSavedAtOnceAllAppear()
{
    const auto model = loadedModel();
    std::vector<DownloadItem> items = numbered(3'000);
    QVERIFY(save(m_other, items));
    QTRY_COMPARE_WITH_TIMEOUT(model->count(), 3'000, patience);
    for (DownloadItem &item : items) {
        item.title.append(u'!');
    }
    QVERIFY(save(m_other, items));
    QTRY_COMPARE_WITH_TIMEOUT(titlesOf(*model).front(), QStringLiteral("Clip 2999!"), patience);
    QCOMPARE(model->total(), 3'000);
    QCOMPARE(titlesOf(*model).back(), QStringLiteral("Clip 0!"));
}

void TestLibraryItemsModel::anItemIsFoundByTitleOrUploader_data()
{
    QTest::addColumn<QString>("locale");
    QTest::addColumn<QString>("title");
    QTest::addColumn<QString>("uploader");
    QTest::addColumn<QString>("search");
    QTest::addColumn<bool>("isFound");
    row("a part of the title", "en_US", "Holiday in Rome", "", "day in", true);
    row("case aside", "en_US", "Holiday in ROME", "", "rome", true);
    row("the uploader", "en_US", "Holiday", "The Travellers", "travel", true);
    row("neither", "en_US", "Holiday", "The Travellers", "Paris", false);
    row("not across the two", "en_US", "Holiday", "The", "ythe", false);
    row("nothing is a wildcard", "en_US", "100 percent", "", "1%p", false);
    row("letters beyond ASCII", "de_DE", "ÉTÉ À LA MER", "", "été à", true);
    row("a sharp s, which has no capital", "de_DE", "Große Straße", "", "GROßE STRAß", true);
    row("a composed letter for a decomposed one", "fr_FR", "Cafe\xcc\x81", "", "café", true);
    row("a final sigma", "el_GR", "ΟΔΟΣ", "", "οδος", true);
    row("an accent left out", "fr_FR", "Été au Café", "", "ete au cafe", true);
    row("an accent left out of the uploader", "fr_FR", "x", "Chaîne Été", "chaine", true);
    row("an accent typed", "fr_FR", "Été au Café", "", "CAFÉ", true);
    row("another accent than the one typed", "fr_FR", "Été au Café", "", "cafè", false);
    row("an accent that is not there", "el_GR", "ΟΔΟΣ", "", "οδός", false);
    row("accents of two kinds on a letter", "vi_VN", "Tiếng Việt", "", "tieng viet", true);
    row("a decomposed letter, typed plain", "fr_FR", "Cafe\xcc\x81", "", "cafe", true);
    row("a letter of its own, typed plain", "sv_SE", "Får på ön", "", "far pa on", true);
    row("a letter of its own, typed as it is", "sv_SE", "Får på ön", "", "FÅR", true);
    row("which is not the plain one", "sv_SE", "Far och son", "", "får", false);
    row("a Spanish letter of its own", "es_ES", "El ano", "", "año", false);
    row("a letter with a stroke", "pl_PL", "Żółw w Łodzi", "", "zolw w lodzi", true);
    row("a ligature", "da_DK", "Æbler og øl", "", "aebler og ol", true);
    row("an accent beside a blank", "fr_FR", "voilà été", "", "a ete", true);
    row("not from plain letters to accented ones", "fr_FR", "été", "y", "teé", false);
    row("a Cyrillic letter with a mark", "ru_RU", "Ёлка и йогурт", "", "елка", true);
    row("marks that tell kana apart", "ja_JP", "ガラス", "", "カラス", false);
    row("narrow kana", "ja_JP", "ｶﾞﾗｽ", "", "ガラス", true);
    row("wide letters", "ja_JP", "Ｖｉｄｅｏ", "", "video", true);
    row("a capital I with a dot, elsewhere", "en_US", "İstanbul", "", "istanbul", true);
    row("a dotless i, elsewhere", "en_US", "Işık ve ışık", "", "isik ve isik", true);
    row("a Turkish capital I is dotless", "tr_TR", "ILIK", "", "ılık", true);
    row("and not the dotted one", "tr_TR", "ILIK", "", "ilik", false);
    row("nor a small dotless one", "tr_TR", "ılık", "", "ilik", false);
    row("which it is elsewhere", "en_US", "ILIK", "", "ilik", true);
    row("other letters are typed plain there too", "tr_TR", "Gün Işığı", "", "gun ısıgı", true);
    row("Cyrillic", "ru_RU", "Война и мир", "", "ВОЙНА", true);
    row("blanks count", "en_US", "ab", "", "a b", false);
    row("a picture character", "en_US", "Party 🎉🎊", "", "🎊", true);
}

void TestLibraryItemsModel::anItemIsFoundByTitleOrUploader()
{
    QFETCH(QString, locale);
    QFETCH(QString, title);
    QFETCH(QString, uploader);
    QFETCH(QString, search);
    QFETCH(bool, isFound);
    const Language language{QLocale(locale)};
    QVERIFY(save(m_container, {itemAt(1, title, uploader.isEmpty() ? QString() : uploader)}));
    const auto model = loadedModel(search);
    QCOMPARE(model->count(), isFound ? 1 : 0);
    QCOMPARE(model->total(), 1);
}

void TestLibraryItemsModel::keysOfAnotherLanguageAreMadeAgain()
{
    const QString search = QString::fromUtf8("ılık");
    QVERIFY(save(m_container, {itemAt(1, QStringLiteral("ILIK")), itemAt(2, QStringLiteral("x"))}));
    QCOMPARE(loadedModel(search)->count(), 0);
    const Language turkish{QLocale(QLocale::Turkish)};
    QCOMPARE(loadedModel(search)->count(), 1);
    Database database(m_file);
    QTRY_COMPARE_WITH_TIMEOUT(
        database.number("SELECT count(*) FROM RowSearchKey WHERE folding = 'plain-tr'"), 2,
        patience);
    QCOMPARE(loadedModel(search)->count(), 1);
}

void TestLibraryItemsModel::keysThatDoNotFitAreMadeAgain_data()
{
    QTest::addColumn<QByteArray>("change");
    QTest::newRow("a store from before there were such keys")
        << QByteArray("DROP TRIGGER DownloadItem_removed; DROP TABLE RowSearchKey;"
                      "CREATE TABLE SearchKey (item TEXT PRIMARY KEY, folding TEXT, key BLOB);"
                      "CREATE TRIGGER DownloadItem_removed AFTER DELETE ON DownloadItem BEGIN "
                      "DELETE FROM SearchKey WHERE item = OLD.id; END");
    QTest::newRow("rows that another program has numbered anew")
        << QByteArray("UPDATE DownloadItem SET rowid = -rowid;"
                      "UPDATE DownloadItem SET rowid = 4 + rowid");
}

void TestLibraryItemsModel::keysThatDoNotFitAreMadeAgain()
{
    QFETCH(QByteArray, change);
    const std::vector<DownloadItem> items = numbered(3);
    QVERIFY(save(m_container, items));
    Database database(m_file);
    database.execute(change.constData());
    m_container = makeContainer(m_file);
    QVERIFY(m_container);
    QCOMPARE(titlesOf(*loadedModel(QStringLiteral("clip 2"))), QStringList(items[2].title));
    const auto fitting = [&database] {
        return database.number("SELECT count(*) FROM RowSearchKey k JOIN DownloadItem i "
                               "ON i.rowid = k.number AND i.id = k.item");
    };
    QTRY_COMPARE_WITH_TIMEOUT(fitting(), 3, patience);
    QVERIFY(remove(m_container, {items[1].id}));
    QCOMPARE(fitting(), 2);
    QCOMPARE(database.number("SELECT count(*) FROM RowSearchKey"), 2);
    QVERIFY(save(m_container, {itemAt(9, QStringLiteral("new"))}));
    QCOMPARE(loadedModel(QStringLiteral("new"))->count(), 1);
}

void TestLibraryItemsModel::theLastOfManySearchesIsAnswered()
{
    QVERIFY(save(m_container, numbered(2'000)));
    const auto model = loadedModel();
    const Mirror mirror(*model);
    QSignalSpy answered(model.get(), &LibraryItemsModel::searchAnswered);
    const QString typed = QStringLiteral("clip 1234");
    for (qsizetype length = 1; length <= typed.size(); ++length) {
        model->setSearch(typed.left(length));
    }
    QTRY_COMPARE_WITH_TIMEOUT(answered.count(), 1, patience);
    QCOMPARE(titlesOf(*model), QStringList(QStringLiteral("Clip 1234")));
    model->setSearch(QStringLiteral("nothing has this"));
    QTRY_COMPARE_WITH_TIMEOUT(answered.count(), 2, patience);
    QCOMPARE(model->count(), 0);
}

void TestLibraryItemsModel::aListThatGoesAwayWhileItFillsDoesNoHarm()
{
    QVERIFY(save(m_container, numbered(12'000)));
    for (int round = 0; round < 5; ++round) {
        auto model = std::make_unique<LibraryItemsModel>();
        model->setContainer(m_container);
        QTRY_VERIFY_WITH_TIMEOUT(round == 0 || model->count() > 0, patience);
        model->setSearch(QString::number(round));
        model.reset();
        QVERIFY(save(m_other, {itemAt(20'000 + round, QStringLiteral("new"))}));
    }
    QCOMPARE(loadedModel()->count(), 12'005);
}

void TestLibraryItemsModel::aListWithoutAContainerIsEmpty()
{
    QVERIFY(save(m_container, numbered(3)));
    const auto model = loadedModel();
    model->setContainer(nullptr);
    QCOMPARE(model->count(), 0);
    QCOMPARE(model->total(), 0);
    model->setSearch(QStringLiteral("x"));
    QCOMPARE(model->count(), 0);
}

/// Many random writes by both containers and searches, each of which may meet the one before.
void TestLibraryItemsModel::theListIsWhatAPlainLookAtTheStoreWouldShow()
{
    QRandomGenerator random(4);
    std::vector<DownloadItem> items;
    const auto model = loadedModel();
    const QAbstractItemModelTester tester(model.get());
    const Mirror mirror(*model);
    for (int round = 0; round < 120; ++round) {
        ModelContext context(round % 2 == 0 ? m_container : m_other);
        for (int step = random.bounded(1, 6); step > 0; --step) {
            if (!items.empty() && random.bounded(3) == 0) {
                const auto place =
                    static_cast<std::ptrdiff_t>(random.bounded(static_cast<quint32>(items.size())));
                context.removeItem(items[static_cast<std::size_t>(place)].id);
                items.erase(items.begin() + place);
            } else {
                items.push_back(
                    itemAt(random.bounded(1'000'000), QString::number(random.bounded(100'000))));
                context.insert(items.back());
            }
        }
        QVERIFY(context.save());
        if (random.bounded(4) == 0) {
            model->setSearch(QString::number(random.bounded(30)).left(random.bounded(3)));
        }
        if (random.bounded(3) == 0) {
            QCoreApplication::processEvents();
        }
    }
    QSignalSpy answered(model.get(), &LibraryItemsModel::searchAnswered);
    model->setSearch(QStringLiteral("7"));
    QTRY_COMPARE_WITH_TIMEOUT(answered.count(), 1, patience);
    std::sort(items.begin(), items.end(),
              [](const auto &a, const auto &b) { return *a.completedAt > *b.completedAt; });
    QStringList expected;
    for (const DownloadItem &item : items) {
        if (item.title.contains(u'7')) {
            expected << item.title;
        }
    }
    QCOMPARE(titlesOf(*model), expected);
    QCOMPARE(model->total(), static_cast<int>(items.size()));
    QList<QUuid> shown;
    for (int row = 0; row < model->count(); ++row) {
        shown << model->idAt(row);
    }
    QCOMPARE(mirror.ids, shown);
}

QTEST_GUILESS_MAIN(TestLibraryItemsModel)
#include "tst_library_items_model.moc"
