// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/ui/library/library_screen_test.h"

#include <QTest>

using namespace Qt::StringLiterals;
using namespace veltro;

/// The tiles: what they show, how they are found, and how keys and pointer choose among them.
class LibraryGridTest : public LibraryScreenTest {
    Q_OBJECT

private Q_SLOTS:
    void saysThatItIsEmpty();
    void showsWhatIsKnownOfAnItem();
    void searchNarrowsAndKeepsTheChoice();
    void arrowsMoveThroughTheGrid();
    void keysBelongToATextFieldFirst();
    void aRubberBandChoosesAndScrolls();
    void makesOnlyTheTilesInView();
    void showsWhatIsAskedForFromOutside();
};

void LibraryGridTest::saysThatItIsEmpty()
{
    show();
    QTRY_VERIFY(shownText(u"Empty library"_s));
    QVERIFY(!first("QQuickGridView"));

    // What is saved while it is shown appears, and the sentence goes.
    saveTitles({u"first"_s});
    QTRY_VERIFY(tile(u"first"_s));
    QVERIFY(!shownText(u"Empty library"_s));
}

void LibraryGridTest::showsWhatIsKnownOfAnItem()
{
    DownloadItem full = m_library->item(u"Full"_s);
    full.uploader = u"Somebody"_s;
    full.durationSeconds = 3725.9;
    full.formatLabel = u"1080p"_s;
    full.fileSizeBytes = 12'345'678;
    m_library->giveThumbnail(full, Qt::green);
    DownloadItem bare = m_library->item(u"Bare"_s);
    m_library->save({full, bare});
    show();
    QTRY_VERIFY(tile(u"Bare"_s));
    QVERIFY(shownText(u"Somebody"_s));
    QVERIFY(shownText(u"1:02:05"_s));
    QCOMPARE(tile(u"Full"_s)->property("spokenName"),
             u"Full, Somebody, 1 hour 2 minutes 5 seconds"_s);
    QCOMPARE(all("veltro::Thumbnail").size(), 2);
    const auto colour = [&] {
        const QQuickItem *still = tile(u"Full"_s);
        return window()->grabWindow().pixelColor(
            still->mapToScene(QPointF(still->width() / 2, 40)).toPoint());
    };
    QTRY_COMPARE_WITH_TIMEOUT(colour(), QColor(Qt::green), patience);

    click(u"Full"_s);
    QVERIFY(shownText(u"Somebody · 1:02:05 · 1080p · 12.3 MB"_s));
    click(u"Bare"_s);
    QTRY_COMPARE(screen()->title(), u"Bare"_s);
    QVERIFY(!button(u"Open"_s)->isEnabled());
}

void LibraryGridTest::searchNarrowsAndKeepsTheChoice()
{
    const DownloadItem one = film(u"Été"_s);
    m_library->save({one, m_library->item(u"winter"_s), m_library->item(u"autumn"_s)});
    show();
    click(u"Été"_s);
    screen()->setSearch(u"WIN"_s);
    QTRY_COMPARE(screen()->items()->rowCount(), 1);
    QCOMPARE(screen()->file(), *one.localFileURL);
    press(Qt::Key_A, Qt::ControlModifier);
    QCOMPARE(screen()->title(), u"winter"_s);
    screen()->setSearch(u"nothing like it"_s);
    QTRY_COMPARE(screen()->items()->rowCount(), 0);
    press(Qt::Key_A, Qt::ControlModifier);
    QCOMPARE(screen()->selection()->count(), 0);
    QVERIFY(!shownText(u"Empty library"_s));

    // What a search hides is deleted with the rest of the choice.
    screen()->setSearch({});
    click(u"Été"_s);
    click(u"autumn"_s, Qt::ControlModifier);
    screen()->setSearch(u"aut"_s);
    QTRY_COMPARE(screen()->items()->rowCount(), 1);
    press(Qt::Key_Delete);
    QTRY_COMPARE_WITH_TIMEOUT(m_library->storedTitles(), QStringList{u"winter"_s}, patience);
    QVERIFY(!QFile::exists(one.localFileURL->toLocalFile()));
}

void LibraryGridTest::arrowsMoveThroughTheGrid()
{
    saveNumbers(40);
    show();
    click(u"0"_s);
    press(Qt::Key_Right);
    QCOMPARE(chosen(), QStringList{u"1"_s});
    press(Qt::Key_Down);
    QCOMPARE(chosen(), QStringList{QString::number(1 + screen()->columns())});
    press(Qt::Key_Left, Qt::ShiftModifier);
    QCOMPARE(chosen().size(), 2);
    press(Qt::Key_End);
    QCOMPARE(chosen(), QStringList{u"39"_s});
    QTRY_VERIFY(tile(u"39"_s));
    QVERIFY(window()->contentItem()->contains(middle(tile(u"39"_s))));
}

void LibraryGridTest::keysBelongToATextFieldFirst()
{
    saveTitles({u"alpha"_s, u"beta"_s});
    show();
    QTRY_VERIFY(tile(u"beta"_s));
    press(Qt::Key_F, Qt::ControlModifier);
    QTRY_VERIFY(window()->activeFocusItem()->inherits("QQuickTextField"));
    QTest::keyClick(window(), 'a');
    QTest::keyClick(window(), 'x');
    press(Qt::Key_A, Qt::ControlModifier);
    QCOMPARE(screen()->selection()->count(), 0);
    press(Qt::Key_Delete);
    QCOMPARE(window()->activeFocusItem()->property("text"), QString());
    QTRY_COMPARE(screen()->items()->rowCount(), 2);

    click(u"alpha"_s);
    press(Qt::Key_A, Qt::ControlModifier);
    QCOMPARE(chosen(), (QStringList{u"alpha"_s, u"beta"_s}));
    click(u"beta"_s);
    press(Qt::Key_Delete);
    QTRY_COMPARE_WITH_TIMEOUT(screen()->items()->rowCount(), 1, patience);
    click(u"alpha"_s);
    press(Qt::Key_Delete, Qt::ControlModifier);
    QTRY_VERIFY_WITH_TIMEOUT(shownText(u"Empty library"_s), patience);
}

void LibraryGridTest::aRubberBandChoosesAndScrolls()
{
    saveNumbers(200);
    show();
    QTRY_VERIFY(tile(u"0"_s));
    const QQuickItem *grid = first("QQuickGridView");
    const QPoint start =
        tile(u"0"_s)->mapToScene({tile(u"0"_s)->width() + 6, 20}).toPoint(); // between two tiles
    const auto moveTo = [this](QPoint where) { QTest::mouseMove(window(), where); };

    QTest::mousePress(window(), Qt::LeftButton, {}, start);
    moveTo(start + QPoint(4, 0));
    QVERIFY(!screen()->selection()->isDragging());
    moveTo(start + QPoint(30, 30));
    QVERIFY(screen()->selection()->isDragging());
    QCOMPARE(chosen(), QStringList{u"1"_s});
    // Held below the grid's lower edge, it goes on by itself past what was in view.
    moveTo(QPoint(start.x() + 30, window()->height() - 2));
    QTRY_VERIFY_WITH_TIMEOUT(chosen().size() > 10, patience);
    QVERIFY(grid->property("contentY").toDouble() > 100);
    QTest::mouseRelease(window(), Qt::LeftButton, {},
                        QPoint(start.x() + 30, window()->height() - 2));
    QVERIFY(!screen()->selection()->isDragging());
    QVERIFY(chosen().size() > 10);
    QVERIFY(!chosen().contains(u"0"_s));
}

void LibraryGridTest::makesOnlyTheTilesInView()
{
    constexpr int many = 20'000;
    saveNumbers(many, 1'000'000);
    show();
    QTRY_COMPARE_WITH_TIMEOUT(screen()->items()->rowCount(), many, patience);
    QVERIFY(all("LibraryTile_").size() < 60);
    press(Qt::Key_A, Qt::ControlModifier);
    QVERIFY(shownText(u"20000 items selected"_s));
    QVERIFY(shownText(u"20 GB"_s));
    click(u"0"_s);
    press(Qt::Key_End);
    QTRY_VERIFY(tile(u"19999"_s));
    QVERIFY(all("LibraryTile_").size() < 60);
}

void LibraryGridTest::showsWhatIsAskedForFromOutside()
{
    const std::vector<DownloadItem> items = saveNumbers(300);
    const auto isInView = [this](const QString &title) {
        const QQuickItem *shown = tile(title);
        return shown && QRect({}, window()->size()).contains(middle(shown));
    };
    // Asked for before there is a screen, and before it has read its rows.
    m_library->services().ask({.item = items.at(280).id, .search = {}});
    show();
    QTRY_COMPARE_WITH_TIMEOUT(chosen(), QStringList{u"280"_s}, patience);
    QTRY_VERIFY(isInView(u"280"_s));
    m_library->services().ask({.item = {}, .search = u"12"_s});
    QTRY_COMPARE_WITH_TIMEOUT(screen()->items()->rowCount(), 13, patience);
    QCOMPARE(screen()->search(), u"12"_s);
    // A search that hides the item gives way to it.
    m_library->services().ask({.item = items.at(3).id, .search = {}});
    QTRY_COMPARE_WITH_TIMEOUT(chosen(), QStringList{u"3"_s}, patience);
    QTRY_VERIFY(isInView(u"3"_s));
    // What has gone meanwhile changes nothing.
    m_library->services().ask({.item = QUuid::createUuid(), .search = {}});
    QCOMPARE(chosen(), QStringList{u"3"_s});
}

QTEST_MAIN(LibraryGridTest)
#include "tst_library_grid.moc"
