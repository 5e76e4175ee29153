// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/library/library_selection.h"

#include <QCoreApplication>
#include <QSignalSpy>
#include <QTest>

#include <algorithm>
#include <memory>
#include <vector>

using veltro::CellRange;
using veltro::LibrarySelection;
using veltro::TileGrid;

namespace {

constexpr Qt::KeyboardModifiers plain = Qt::NoModifier;
constexpr Qt::KeyboardModifiers control = Qt::ControlModifier;
constexpr Qt::KeyboardModifiers shift = Qt::ShiftModifier;

/// Items in a list, as many as a test wants, of which a search may leave some.
class ListedTiles : public veltro::TileRows {
public:
    explicit ListedTiles(int count)
    {
        for (int i = 0; i < count; ++i) {
            m_all.emplace_back(static_cast<uint>(i) + 1, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0);
        }
        m_shown = m_all;
    }
    [[nodiscard]] int rowCount() const override { return static_cast<int>(m_shown.size()); }
    [[nodiscard]] QUuid idAt(int row) const override
    {
        return m_shown.at(static_cast<std::size_t>(row));
    }
    [[nodiscard]] int rowOf(const QUuid &id) const override
    {
        const auto found = std::find(m_shown.begin(), m_shown.end(), id);
        return found == m_shown.end() ? -1 : static_cast<int>(found - m_shown.begin());
    }
    void showOnly(const std::vector<int> &items)
    {
        m_shown.clear();
        for (const int item : items) {
            m_shown.push_back(this->item(item));
        }
    }
    /// The item of that number, shown or not.
    [[nodiscard]] QUuid item(int number) const
    {
        return m_all.at(static_cast<std::size_t>(number));
    }

private:
    std::vector<QUuid> m_all;
    std::vector<QUuid> m_shown;
};

}

/// What clicks, drags and keys choose, in a list of ten tiles, three to a line.
class LibrarySelectionTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init();

    void aClickChoosesOneTile();
    void controlAddsAndTakesAway();
    void shiftChoosesARangeEitherWay();
    void shiftWithoutAnAnchorIsAPlainClick();
    void aRangeTakesVisibleTilesOnly();
    void allAreTheVisibleOnes();
    void arrowsMoveExtendAndWalkPast();
    void aDragChoosesWhatItTouches();
    void aDragWithAKeyAddsToTheChoice();
    void aDragReachesTilesThatAreNotInView();
    void theReleaseOfADragIsNoClick();
    void whatIsDeletedLeavesTheChoice();
    void everyChangeIsToldOnce();
    void tilesShareTheWidth_data();
    void tilesShareTheWidth();
    void rectanglesMeetTilesAndNotTheGaps();

private:
    [[nodiscard]] QSet<QUuid> items(std::initializer_list<int> numbers) const
    {
        QSet<QUuid> ids;
        for (const int number : numbers) {
            ids.insert(m_tiles->item(number));
        }
        return ids;
    }
    void click(int number, Qt::KeyboardModifiers modifiers)
    {
        m_selection->click(m_tiles->item(number), modifiers);
    }
    void drag(QPointF from, QPointF to, Qt::KeyboardModifiers modifiers)
    {
        m_selection->beginMarquee(from, modifiers);
        m_selection->moveMarquee((from + to) / 2);
        m_selection->moveMarquee(to);
    }
    void show(int count)
    {
        m_selection.reset();
        m_tiles = std::make_unique<ListedTiles>(count);
        m_selection = std::make_unique<LibrarySelection>(*m_tiles);
        // The cells are 112 by 92.
        m_selection->setGrid({.columns = 3, .tile = {100, 80}});
    }

    std::unique_ptr<ListedTiles> m_tiles;
    std::unique_ptr<LibrarySelection> m_selection;
};

void LibrarySelectionTest::init()
{
    show(10);
}

void LibrarySelectionTest::aClickChoosesOneTile()
{
    click(2, plain);
    click(5, plain);
    QCOMPARE(m_selection->ids(), items({5}));
    QCOMPARE(m_selection->anchor(), m_tiles->item(5));
}

void LibrarySelectionTest::controlAddsAndTakesAway()
{
    click(2, plain);
    click(4, control);
    QCOMPARE(m_selection->ids(), items({2, 4}));
    click(2, control);
    QCOMPARE(m_selection->ids(), items({4}));
    QCOMPARE(m_selection->anchor(), m_tiles->item(2));
    click(4, control);
    QCOMPARE(m_selection->count(), 0);
    click(7, control | shift);
    QCOMPARE(m_selection->ids(), items({7}));
}

void LibrarySelectionTest::shiftChoosesARangeEitherWay()
{
    click(3, plain);
    click(6, shift);
    QCOMPARE(m_selection->ids(), items({3, 4, 5, 6}));
    QCOMPARE(m_selection->anchor(), m_tiles->item(3));
    click(1, shift);
    QCOMPARE(m_selection->ids(), items({1, 2, 3}));

    click(6, plain);
    click(3, shift);
    QCOMPARE(m_selection->ids(), items({3, 4, 5, 6}));
}

void LibrarySelectionTest::shiftWithoutAnAnchorIsAPlainClick()
{
    click(4, shift);
    QCOMPARE(m_selection->ids(), items({4}));
    QCOMPARE(m_selection->anchor(), m_tiles->item(4));
    click(6, shift);
    QCOMPARE(m_selection->ids(), items({4, 5, 6}));
}

void LibrarySelectionTest::aRangeTakesVisibleTilesOnly()
{
    click(1, plain);
    m_tiles->showOnly({1, 3, 5, 7});
    click(7, shift);
    QCOMPARE(m_selection->ids(), items({1, 3, 5, 7}));

    // An anchor that a search hides counts as none.
    m_tiles->showOnly({3, 5, 7});
    click(5, shift);
    QCOMPARE(m_selection->ids(), items({5}));
    click(7, shift);
    QCOMPARE(m_selection->ids(), items({5, 7}));
}

void LibrarySelectionTest::allAreTheVisibleOnes()
{
    click(9, plain);
    m_tiles->showOnly({2, 4});
    m_selection->selectAll();
    QCOMPARE(m_selection->ids(), items({2, 4}));
    m_tiles->showOnly({});
    m_selection->selectAll();
    QCOMPARE(m_selection->count(), 0);
}

void LibrarySelectionTest::arrowsMoveExtendAndWalkPast()
{
    m_selection->move(3, plain);
    QCOMPARE(m_selection->ids(), items({0}));
    m_selection->move(3, plain);
    QCOMPARE(m_selection->ids(), items({3}));
    m_selection->move(1, shift);
    m_selection->move(3, shift);
    QCOMPARE(m_selection->ids(), items({3, 4, 5, 6, 7}));
    m_selection->move(-6, shift);
    QCOMPARE(m_selection->ids(), items({1, 2, 3}));
    m_selection->move(3, control);
    QCOMPARE(m_selection->ids(), items({1, 2, 3}));
    QCOMPARE(m_selection->currentRow(), 4);
    m_selection->move(1000, plain);
    QCOMPARE(m_selection->ids(), items({9}));
    m_selection->move(-1000, plain);
    QCOMPARE(m_selection->ids(), items({0}));

    m_tiles->showOnly({});
    m_selection->move(1, plain);
    QCOMPARE(m_selection->ids(), items({0}));
    QCOMPARE(m_selection->currentRow(), -1);
}

void LibrarySelectionTest::aDragChoosesWhatItTouches()
{
    click(9, plain);
    // From the gap before the second column to the second line.
    drag({106, 5}, {209, 100}, plain);
    QCOMPARE(m_selection->ids(), items({1, 4}));
    QCOMPARE(m_selection->marquee(), QRectF(106, 5, 103, 95));
    // Back, so that less is touched; and over nothing but a gap.
    m_selection->moveMarquee({150, 20});
    QCOMPARE(m_selection->ids(), items({1}));
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
    for (const auto key : {shift, control}) {
        click(9, plain);
        drag({106, 5}, {209, 20}, key);
        QCOMPARE(m_selection->ids(), items({1, 9}));
        m_selection->moveMarquee({108, 20});
        QCOMPARE(m_selection->ids(), items({9}));
        m_selection->endMarquee();
        QCoreApplication::processEvents();
    }
}

void LibrarySelectionTest::aDragReachesTilesThatAreNotInView()
{
    show(30'000);
    drag({106, 0}, {1000, 1e9}, plain);
    QCOMPARE(m_selection->count(), 20'000);
    QVERIFY(!m_selection->contains(m_tiles->item(0)));
    QVERIFY(m_selection->contains(m_tiles->item(29'999)));
    m_selection->moveMarquee({-1e9, -1e9});
    QCOMPARE(m_selection->ids(), items({0}));
}

void LibrarySelectionTest::theReleaseOfADragIsNoClick()
{
    drag({106, 5}, {209, 20}, plain);
    m_selection->endMarquee();
    click(8, plain);
    QCOMPARE(m_selection->ids(), items({1}));
    click(8, plain);
    QCOMPARE(m_selection->ids(), items({8}));

    // Where no click follows the release, the next one counts.
    drag({106, 5}, {209, 20}, plain);
    m_selection->endMarquee();
    QCoreApplication::processEvents();
    click(8, plain);
    QCOMPARE(m_selection->ids(), items({8}));
}

void LibrarySelectionTest::whatIsDeletedLeavesTheChoice()
{
    click(2, plain);
    click(4, shift);
    m_selection->forget(items({3, 9}));
    QCOMPARE(m_selection->ids(), items({2, 4}));
    QVERIFY(!m_selection->anchor());
    m_selection->forget(items({4}));
    QCOMPARE(m_selection->ids(), items({2}));
    QCOMPARE(m_selection->currentRow(), 5); // the keyboard goes on from there
}

void LibrarySelectionTest::everyChangeIsToldOnce()
{
    QSignalSpy changes(m_selection.get(), &LibrarySelection::changed);
    click(2, plain);
    click(2, plain);
    QCOMPARE(changes.size(), 1);
    const int revision = m_selection->revision();
    click(3, control);
    QCOMPARE(changes.size(), 2);
    QVERIFY(m_selection->revision() != revision);
    m_selection->clear();
    m_selection->clear();
    QCOMPARE(changes.size(), 3);
}

void LibrarySelectionTest::tilesShareTheWidth_data()
{
    QTest::addColumn<double>("width");
    QTest::addColumn<int>("columns");
    QTest::addColumn<double>("tileWidth");
    QTest::newRow("nothing yet") << 0.0 << 1 << 1.0;
    QTest::newRow("less than one") << 100.0 << 1 << 100.0;
    QTest::newRow("one") << 351.0 << 1 << 351.0;
    QTest::newRow("just two") << 352.0 << 2 << 170.0;
    QTest::newRow("three and something") << 600.0 << 3 << 192.0;
}

void LibrarySelectionTest::tilesShareTheWidth()
{
    QFETCH(double, width);
    QFETCH(int, columns);
    QFETCH(double, tileWidth);
    const TileGrid grid = TileGrid::fitting(width, 50);
    QCOMPARE(grid.columns, columns);
    QCOMPARE(grid.tile.width(), tileWidth);
    QVERIFY(grid.frame(columns - 1).right() <= std::max(width, 1.0));
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
