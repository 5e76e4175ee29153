// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/library/library_selection.h"

#include <QCoreApplication>
#include <QSignalSpy>
#include <QTest>

#include <algorithm>
#include <iterator>
#include <memory>
#include <numeric>
#include <vector>

using veltro::CellRange;
using veltro::LibrarySelection;
using veltro::TileGrid;

namespace {

QUuid itemOf(int number)
{
    return {uint(number) + 1, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0};
}

/// Items in a list, of which a search leaves some.
class ListedTiles : public veltro::TileRows {
public:
    [[nodiscard]] int rowCount() const override { return int(shown.size()); }
    [[nodiscard]] QUuid idAt(int row) const override { return itemOf(shown.at(row)); }
    [[nodiscard]] int rowOf(const QUuid &id) const override
    {
        return int(shown.indexOf(int(id.data1) - 1));
    }

    QList<int> shown;
};

QList<int> digitsOf(const QByteArray &word)
{
    QList<int> numbers;
    for (const char digit : word) {
        numbers.append(digit - '0');
    }
    return numbers;
}

}

/// What clicks, drags and keys choose, in a list of ten tiles, three to a line.
class LibrarySelectionTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init() { show(10); }

    void clicksAndKeysChoose_data();
    void clicksAndKeysChoose();
    void aDragChoosesWhatItTouches();
    void aDragWithAKeyAddsToTheChoice();
    void aDragReachesTilesThatAreNotInView();
    void theReleaseOfADragIsNoClick();
    void everyChangeIsToldOnce();
    void tilesShareTheWidth();
    void rectanglesMeetTilesAndNotTheGaps();

private:
    void act(QByteArray word);
    void click(int number, Qt::KeyboardModifiers keys = {})
    {
        m_selection->click(itemOf(number), keys);
    }
    void drag(QPointF from, QPointF to, Qt::KeyboardModifiers keys = {})
    {
        m_selection->beginMarquee(from, keys);
        m_selection->moveMarquee((from + to) / 2);
        m_selection->moveMarquee(to);
    }
    /// The numbers of what is chosen, in their order.
    [[nodiscard]] QList<int> chosen() const
    {
        QList<int> numbers;
        for (const QUuid &id : m_selection->ids()) {
            numbers.append(int(id.data1) - 1);
        }
        std::sort(numbers.begin(), numbers.end());
        return numbers;
    }
    void show(int count)
    {
        m_selection = std::make_unique<LibrarySelection>(m_tiles);
        m_tiles.shown.resize(count);
        std::iota(m_tiles.shown.begin(), m_tiles.shown.end(), 0);
        // The cells are 112 by 92.
        m_selection->setGrid({.columns = 3, .tile = {100, 80}});
    }

    ListedTiles m_tiles;
    std::unique_ptr<LibrarySelection> m_selection;
};

void LibrarySelectionTest::clicksAndKeysChoose_data()
{
    // A digit is a click on that tile, +3 and -3 are arrow keys, both with control (c) or shift (s)
    // before them; * is the key for all, |24 a search that leaves these, x24 deletes these. =24 is
    // the choice that there is to be by then.
    QTest::addColumn<QByteArray>("words");
    const auto row = [](const char *why, const char *words) {
        QTest::newRow(why) << QByteArray(words);
    };
    row("a click chooses one tile", "2 5 =5 s7 =567");
    row("control adds and takes away", "2 c4 =24 c2 =4 c4 = cs7 =7");
    row("what control takes away is where a range begins", "2 c4 c2 s3 =23");
    row("shift chooses a range either way", "3 s6 =3456 s1 =123 6 s3 =3456");
    row("shift without a beginning is a plain click", "s4 =4 s6 =456");
    row("a range takes visible tiles only", "1 |1357 s7 =1357");
    row("a range does not begin at what a search hides", "1 |357 s5 =5 s7 =57");
    row("all are the visible ones", "9 |24 * =24 | * =");
    row("arrows choose what they reach", "+3 =0 +3 =3 +1000 =9 -1000 =0 | +1 =0");
    row("arrows with shift extend", "3 s+1 s+3 =34567 s-6 =123");
    row("arrows with control walk past", "3 c+3 =3 +1 =7");
    row("what is deleted leaves the choice", "2 s4 x39 =24 x4 =2");
    row("the keyboard goes on from what was deleted", "2 s4 x4 +1 =6");
    row("a range does not begin where something was deleted", "2 s4 x39 s6 =6");
}

void LibrarySelectionTest::act(QByteArray word)
{
    Qt::KeyboardModifiers keys;
    for (const auto &[letter, key] :
         {std::pair('c', Qt::ControlModifier), std::pair('s', Qt::ShiftModifier)}) {
        if (word.startsWith(letter)) {
            keys |= key;
            word.remove(0, 1);
        }
    }
    const QList<int> numbers = digitsOf(word.mid(1));
    switch (word.at(0)) {
    case '=':
        QCOMPARE(chosen(), numbers);
        break;
    case '|':
        m_tiles.shown = numbers;
        break;
    case '*':
        m_selection->selectAll();
        break;
    case 'x': {
        QSet<QUuid> ids;
        std::ranges::transform(numbers, std::inserter(ids, ids.end()), itemOf);
        m_selection->forget(ids);
        break;
    }
    case '+':
    case '-':
        m_selection->move(word.toInt(), keys);
        break;
    default:
        click(word.toInt(), keys);
    }
}

void LibrarySelectionTest::clicksAndKeysChoose()
{
    QFETCH(QByteArray, words);
    for (const QByteArray &word : words.split(' ')) {
        act(word);
    }
}

void LibrarySelectionTest::aDragChoosesWhatItTouches()
{
    click(9);
    // From the gap before the second column to the second line.
    drag({106, 5}, {209, 100});
    QCOMPARE(chosen(), (QList{1, 4}));
    QCOMPARE(m_selection->marquee(), QRectF(106, 5, 103, 95));
    // Back, so that less is touched; and over nothing but a gap.
    m_selection->moveMarquee({150, 20});
    QCOMPARE(chosen(), QList{1});
    m_selection->moveMarquee({108, 20});
    QCOMPARE(m_selection->count(), 0);
    m_selection->endMarquee();
    QVERIFY(!m_selection->isDragging());
    QVERIFY(m_selection->marquee().isNull());
    m_selection->moveMarquee({500, 500});
    QCOMPARE(m_selection->count(), 0);
}

void LibrarySelectionTest::aDragWithAKeyAddsToTheChoice()
{
    for (const auto key : {Qt::ShiftModifier, Qt::ControlModifier}) {
        click(9);
        drag({106, 5}, {209, 20}, key);
        QCOMPARE(chosen(), (QList{1, 9}));
        m_selection->moveMarquee({108, 20});
        QCOMPARE(chosen(), QList{9});
        m_selection->endMarquee();
        QCoreApplication::processEvents();
    }
}

void LibrarySelectionTest::aDragReachesTilesThatAreNotInView()
{
    show(30'000);
    drag({106, 0}, {1000, 1e9});
    QCOMPARE(m_selection->count(), 20'000);
    QVERIFY(!m_selection->contains(itemOf(0)));
    QVERIFY(m_selection->contains(itemOf(29'999)));
    m_selection->moveMarquee({-1e9, -1e9});
    QCOMPARE(chosen(), QList{0});
}

void LibrarySelectionTest::theReleaseOfADragIsNoClick()
{
    drag({106, 5}, {209, 20});
    m_selection->endMarquee();
    click(8);
    QCOMPARE(chosen(), QList{1});
    click(8);
    QCOMPARE(chosen(), QList{8});

    // Where no click follows the release, the next one counts.
    drag({106, 5}, {209, 20});
    m_selection->endMarquee();
    QCoreApplication::processEvents();
    click(8);
    QCOMPARE(chosen(), QList{8});
}

void LibrarySelectionTest::everyChangeIsToldOnce()
{
    QSignalSpy changes(m_selection.get(), &LibrarySelection::changed);
    click(2);
    click(2);
    QCOMPARE(changes.size(), 1);
    const int revision = m_selection->revision();
    click(3, Qt::ControlModifier);
    QCOMPARE(changes.size(), 2);
    QVERIFY(m_selection->revision() != revision);
    m_selection->clear();
    m_selection->clear();
    QCOMPARE(changes.size(), 3);
}

void LibrarySelectionTest::tilesShareTheWidth()
{
    const auto fitted = [](double width) {
        const TileGrid grid = TileGrid::fitting(width, 50);
        return std::pair(grid.columns, grid.tile.width());
    };
    QCOMPARE(fitted(0), std::pair(1, 1.0)); // nothing yet
    QCOMPARE(fitted(100), std::pair(1, 100.0));
    QCOMPARE(fitted(351), std::pair(1, 351.0));
    QCOMPARE(fitted(352), std::pair(2, 170.0));
    QCOMPARE(fitted(600), std::pair(3, 192.0));
}

void LibrarySelectionTest::rectanglesMeetTilesAndNotTheGaps()
{
    // Against the plain way of asking each tile.
    const TileGrid grid{.columns = 3, .tile = {100, 80}};
    const std::vector<double> edges{-20, -1,  1,   50,  99,  101, 106, 111,
                                    113, 180, 210, 213, 223, 225, 330, 400};
    for (const double left : edges) {
        for (const double right : edges) {
            if (right <= left) {
                continue;
            }
            const QRectF area(QPointF(left, left * 0.9 + 0.05), QPointF(right, right * 0.9 + 0.05));
            const CellRange cells = grid.cellsIn(area);
            for (int row = 0; row < 15; ++row) {
                const int line = row / 3;
                const int column = row % 3;
                const bool isIn = line >= cells.firstLine && line <= cells.lastLine &&
                                  column >= cells.firstColumn && column <= cells.lastColumn;
                QCOMPARE(isIn, grid.frame(row).intersects(area));
            }
        }
    }
}

QTEST_GUILESS_MAIN(LibrarySelectionTest)
#include "tst_library_selection.moc"
