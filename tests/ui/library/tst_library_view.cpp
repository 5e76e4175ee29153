// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/log.h"
#include "tests/platform/ffmpeg/stock_tool.h"
#include "tests/ui/library/library_fixture.h"
#include "ui/design/appearance.h"
#include "ui/library/library_screen.h"
#include "ui/player/video_player.h"

#include <QAccessible>
#include <QDir>
#include <QGuiApplication>
#include <QQmlEngine>
#include <QQuickView>
#include <QRegularExpression>
#include <QTest>

#include <algorithm>
#include <memory>
#include <mutex>

using namespace Qt::StringLiterals;
using namespace veltro;
using player::VideoPlayer;

namespace {

constexpr int patience = 30'000;

template <typename Visit>
void visitItems(QQuickItem *item, const Visit &visit)
{
    visit(item);
    for (QQuickItem *child : item->childItems()) {
        visitItems(child, visit);
    }
}

bool isOfType(const QObject *object, const char *type)
{
    return QByteArray(object->metaObject()->className()).startsWith(type);
}

}

/// The screen in a window, driven by pointer and keys, over a real store and real files.
class LibraryViewTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void cleanup();

    void saysThatItIsEmpty();
    void showsWhatIsKnownOfAnItem();
    void takesTitlesAsTheyAre();
    void aClickPlaysAndAnotherPlaysTheOther();
    void manyAreCountedSummedAndDeleted();
    void keysBelongToATextFieldFirst();
    void arrowsMoveThroughTheGrid();
    void searchNarrowsAndKeepsTheChoice();
    void aRubberBandChoosesAndScrolls();
    void theMenuLeavesTheChoiceAlone();
    void deletingGoesOnWhereAFileStays();
    void revealsAndOpens();
    void remembersVolumeAndDivider();
    void makesOnlyTheTilesInView();
    void readsOutRolesAndNames();

private:
    void show();
    void saveTitles(const QStringList &titles);
    [[nodiscard]] LibraryScreen *screen() const
    {
        return m_view->rootObject()->property("screen").value<LibraryScreen *>();
    }
    [[nodiscard]] QList<QQuickItem *> all(const char *type) const;
    [[nodiscard]] QQuickItem *first(const char *type) const { return all(type).value(0); }
    [[nodiscard]] QQuickItem *tile(const QString &title) const;
    [[nodiscard]] QQuickItem *shownText(const QString &text) const;
    [[nodiscard]] QQuickItem *button(const QString &text) const;
    [[nodiscard]] static QPoint middle(const QQuickItem *item)
    {
        return item->mapToScene(QPointF(item->width() / 2, item->height() / 2)).toPoint();
    }
    void click(const QString &title, Qt::KeyboardModifiers modifiers = Qt::NoModifier)
    {
        QTRY_VERIFY(tile(title));
        QTest::mouseClick(m_view.get(), Qt::LeftButton, modifiers, middle(tile(title)));
    }
    void press(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier)
    {
        QTest::keyClick(m_view.get(), key, modifiers);
    }
    [[nodiscard]] QStringList chosen() const;

    QTemporaryDir m_media;
    QString m_red;
    std::unique_ptr<LibraryFixture> m_library;
    std::unique_ptr<QQuickView> m_view;
};

void LibraryViewTest::initTestCase()
{
    applyAppearance();
    m_red = m_media.filePath(u"red.mp4"_s);
    QVERIFY(ffmpeg::makeMedia(
        u"-f lavfi -i color=red:size=320x180:rate=25:duration=4 -c:v libx264 -preset ultrafast "
        "-pix_fmt yuv420p red.mp4"_s,
        m_media.path()));
}

void LibraryViewTest::init()
{
    QTest::failOnWarning(QRegularExpression(u".*"_s));
    m_library = std::make_unique<LibraryFixture>();
}

void LibraryViewTest::cleanup()
{
    m_view.reset();
    m_library.reset();
}

void LibraryViewTest::show()
{
    m_view = std::make_unique<QQuickView>();
    m_view->engine()->addImportPath(u":/qt/qml"_s);
    m_view->setResizeMode(QQuickView::SizeRootObjectToView);
    m_view->resize(980, 680);
    m_view->setInitialProperties({{u"store"_s, QVariant::fromValue<QObject *>(nullptr)}});
    m_view->setSource(QUrl(u"qrc:/qt/qml/Veltro/Library/LibraryMacView.qml"_s));
    QCOMPARE(m_view->status(), QQuickView::Ready);
    m_view->show();
    m_view->requestActivate();
    QVERIFY(QTest::qWaitForWindowActive(m_view.get()));
    m_view->rootObject()->forceActiveFocus();
}

void LibraryViewTest::saveTitles(const QStringList &titles)
{
    std::vector<DownloadItem> items;
    for (const QString &title : titles) {
        items.push_back(m_library->item(title));
    }
    m_library->save(items);
}

QList<QQuickItem *> LibraryViewTest::all(const char *type) const
{
    QList<QQuickItem *> found;
    visitItems(m_view->contentItem(), [&](QQuickItem *item) {
        if (item->isVisible() && isOfType(item, type)) {
            found.append(item);
        }
    });
    return found;
}

QQuickItem *LibraryViewTest::tile(const QString &title) const
{
    for (QQuickItem *one : all("LibraryTile_")) {
        if (one->property("title") == title) {
            return one;
        }
    }
    return nullptr;
}

QQuickItem *LibraryViewTest::shownText(const QString &text) const
{
    QQuickItem *found = nullptr;
    visitItems(m_view->contentItem(), [&](QQuickItem *item) {
        if (item->isVisible() && item->inherits("QQuickText") && item->property("text") == text) {
            found = item;
        }
    });
    return found;
}

QQuickItem *LibraryViewTest::button(const QString &text) const
{
    QQuickItem *found = nullptr;
    visitItems(m_view->contentItem(), [&](QQuickItem *item) {
        if (item->isVisible() && item->inherits("QQuickAbstractButton") &&
            item->property("text") == text) {
            found = item;
        }
    });
    return found;
}

QStringList LibraryViewTest::chosen() const
{
    QStringList titles;
    const QAbstractItemModel &items = *screen()->items();
    for (int row = 0; row < items.rowCount(); ++row) {
        const QModelIndex index = items.index(row, 0);
        if (screen()->selection()->contains(
                items.data(index, LibraryItemsModel::itemIdRole).toUuid())) {
            titles.append(items.data(index, LibraryItemsModel::titleRole).toString());
        }
    }
    return titles;
}

void LibraryViewTest::saysThatItIsEmpty()
{
    show();
    QTRY_VERIFY(shownText(u"Empty library"_s));
    QVERIFY(shownText(u"Anything you save lands here. Paste a link on the Home tab or drag one "
                      "onto the window."_s));
    QVERIFY(shownText(u"Saved on this Mac"_s));
    QVERIFY(shownText(u"Library"_s));
    QVERIFY(shownText(u"Pick a clip"_s));
    QVERIFY(shownText(u"Click any tile to play it here."_s));
    QVERIFY(!first("QQuickGridView"));

    // What is saved while it is shown appears, and the sentence goes.
    saveTitles({u"first"_s});
    QTRY_VERIFY(tile(u"first"_s));
    QVERIFY(!shownText(u"Empty library"_s));
}

void LibraryViewTest::showsWhatIsKnownOfAnItem()
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
    QCOMPARE(all("veltro::LocalThumbnail").size(), 2);
    const auto colour = [&] {
        const QQuickItem *still = tile(u"Full"_s);
        return m_view->grabWindow().pixelColor(
            still->mapToScene(QPointF(still->width() / 2, 40)).toPoint());
    };
    QTRY_COMPARE_WITH_TIMEOUT(colour(), QColor(Qt::green), patience);

    click(u"Full"_s);
    QVERIFY(shownText(u"Somebody · 1:02:05 · 1080p · 12.3 MB"_s));
    click(u"Bare"_s);
    QTRY_COMPARE(screen()->title(), u"Bare"_s);
    QVERIFY(!button(u"Open"_s)->isEnabled());
}

void LibraryViewTest::takesTitlesAsTheyAre()
{
    const QStringList titles{u"<b>bold</b><img src='http://127.0.0.1:9/x.png'>"_s,
                             QString(10'000, u'W'), u"\u202Etxt.4pm \u2066"_s, u"שלום עולם 🎬"_s};
    saveTitles(titles);
    show();
    QTRY_COMPARE(all("LibraryTile_").size(), titles.size());
    for (const QString &title : titles) {
        click(title);
        QTRY_VERIFY(shownText(title));
    }
    visitItems(m_view->contentItem(), [](const QQuickItem *item) {
        if (item->inherits("QQuickText")) {
            QCOMPARE(item->property("textFormat").toInt(), int(Qt::PlainText));
        }
    });
}

void LibraryViewTest::aClickPlaysAndAnotherPlaysTheOther()
{
    DownloadItem one = m_library->item(u"one"_s);
    DownloadItem two = m_library->item(u"two"_s);
    m_library->giveFile(one, m_red);
    m_library->giveFile(two, m_red);
    m_library->save({one, two});
    show();
    click(u"one"_s);
    QTRY_VERIFY(first("veltro::player::VideoPlayer"));
    auto *player = qobject_cast<VideoPlayer *>(first("veltro::player::VideoPlayer"));
    QTRY_VERIFY_WITH_TIMEOUT(player->positionSeconds() > 0.1, patience);
    QCOMPARE(player->url(), *one.localFileURL);
    click(u"two"_s);
    QCOMPARE(player->url(), *two.localFileURL);
    QTRY_VERIFY_WITH_TIMEOUT(player->positionSeconds() > 0.1, patience);

    // Nothing plays when nothing is chosen.
    click(u"two"_s, Qt::ControlModifier);
    QTRY_VERIFY(shownText(u"Pick a clip"_s));
    QTRY_VERIFY(!first("veltro::player::VideoPlayer"));
}

void LibraryViewTest::manyAreCountedSummedAndDeleted()
{
    DownloadItem one = m_library->item(u"one"_s);
    DownloadItem two = m_library->item(u"two"_s);
    m_library->giveFile(one, m_red);
    m_library->giveThumbnail(one, Qt::blue);
    one.fileSizeBytes = 1'500'000;
    two.fileSizeBytes = 2'000'000;
    m_library->save({one, two, m_library->item(u"three"_s)});
    show();
    click(u"one"_s);
    click(u"two"_s, Qt::ShiftModifier);
    QVERIFY(shownText(u"2 items selected"_s));
    QVERIFY(shownText(u"3.5 MB"_s));
    QVERIFY(shownText(u"Click any tile to play it here."_s));
    QQuickItem *deletes = button(u"Delete 2 items"_s);
    QVERIFY(deletes);
    QTest::mouseClick(m_view.get(), Qt::LeftButton, {}, middle(deletes));
    QTRY_COMPARE_WITH_TIMEOUT(screen()->items()->rowCount(), 1, patience);
    QVERIFY(shownText(u"Pick a clip"_s));
    QCOMPARE(m_library->storedTitles(), QStringList{u"three"_s});
    QVERIFY(!QFile::exists(one.localFileURL->toLocalFile()));
    QVERIFY(QFile::exists(one.thumbnailFileURL->toLocalFile()));
}

void LibraryViewTest::keysBelongToATextFieldFirst()
{
    saveTitles({u"alpha"_s, u"beta"_s});
    show();
    QTRY_VERIFY(tile(u"beta"_s));
    press(Qt::Key_F, Qt::ControlModifier);
    QTRY_VERIFY(m_view->activeFocusItem()->inherits("QQuickTextField"));
    QTest::keyClick(m_view.get(), 'a');
    QTest::keyClick(m_view.get(), 'x');
    press(Qt::Key_A, Qt::ControlModifier);
    QCOMPARE(screen()->selection()->count(), 0);
    press(Qt::Key_Delete);
    QCOMPARE(m_view->activeFocusItem()->property("text"), QString());
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

void LibraryViewTest::arrowsMoveThroughTheGrid()
{
    QStringList titles;
    for (int i = 0; i < 40; ++i) {
        titles.append(QString::number(i));
    }
    saveTitles(titles);
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
    QVERIFY(m_view->contentItem()->contains(middle(tile(u"39"_s))));
}

void LibraryViewTest::searchNarrowsAndKeepsTheChoice()
{
    DownloadItem one = m_library->item(u"Été"_s);
    m_library->giveFile(one, m_red);
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

void LibraryViewTest::aRubberBandChoosesAndScrolls()
{
    QStringList titles;
    for (int i = 0; i < 200; ++i) {
        titles.append(QString::number(i));
    }
    saveTitles(titles);
    show();
    QTRY_VERIFY(tile(u"0"_s));
    const QQuickItem *grid = first("QQuickGridView");
    const QPoint start =
        tile(u"0"_s)->mapToScene({tile(u"0"_s)->width() + 6, 20}).toPoint(); // between two tiles
    const auto moveTo = [this](QPoint where) { QTest::mouseMove(m_view.get(), where); };

    QTest::mousePress(m_view.get(), Qt::LeftButton, {}, start);
    moveTo(start + QPoint(4, 0));
    QVERIFY(!screen()->selection()->isDragging());
    moveTo(start + QPoint(30, 30));
    QVERIFY(screen()->selection()->isDragging());
    QCOMPARE(chosen(), QStringList{u"1"_s});
    // Held below the grid's lower edge, it goes on by itself past what was in view.
    moveTo(QPoint(start.x() + 30, m_view->height() - 2));
    QTRY_VERIFY_WITH_TIMEOUT(chosen().size() > 10, patience);
    QVERIFY(grid->property("contentY").toDouble() > 100);
    QTest::mouseRelease(m_view.get(), Qt::LeftButton, {},
                        QPoint(start.x() + 30, m_view->height() - 2));
    QVERIFY(!screen()->selection()->isDragging());
    QVERIFY(chosen().size() > 10);
    QVERIFY(!chosen().contains(u"0"_s));
}

void LibraryViewTest::theMenuLeavesTheChoiceAlone()
{
    DownloadItem one = m_library->item(u"one"_s);
    m_library->giveFile(one, m_red);
    m_library->save({one, m_library->item(u"two"_s), m_library->item(u"three"_s)});
    show();
    click(u"two"_s);
    // It takes the keys when it has come up.
    const auto openMenu = [&](const QString &title) {
        QTest::mouseClick(m_view.get(), Qt::RightButton, {}, middle(tile(title)));
        QTRY_VERIFY(first("QQuickPopupItem"));
        QTRY_VERIFY(first("QQuickPopupItem")->hasActiveFocus());
    };
    const auto closeMenu = [&] {
        press(Qt::Key_Escape);
        QTRY_VERIFY(!first("QQuickPopupItem"));
    };
    const auto lines = [&] {
        QStringList texts;
        for (const QQuickItem *item : all("MenuItem_")) {
            texts.append(item->property("text").toString());
        }
        return texts;
    };
    openMenu(u"one"_s);
    QCOMPARE(chosen(), QStringList{u"two"_s});
    QCOMPARE(lines(), (QStringList{u"Show in Finder"_s, u"Open"_s, u"Delete"_s}));
    closeMenu();

    // Without a file there is nothing to open.
    openMenu(u"three"_s);
    QCOMPARE(lines(), QStringList{u"Delete"_s});
    closeMenu();

    // With many chosen it deletes them, from wherever it was opened.
    click(u"three"_s, Qt::ControlModifier);
    openMenu(u"one"_s);
    QCOMPARE(lines().last(), u"Delete 2 items"_s);
    QTest::mouseClick(m_view.get(), Qt::LeftButton, {}, middle(all("MenuItem_").last()));
    QTRY_COMPARE_WITH_TIMEOUT(m_library->storedTitles(), QStringList{u"one"_s}, patience);
    QVERIFY(QFile::exists(one.localFileURL->toLocalFile()));
}

void LibraryViewTest::deletingGoesOnWhereAFileStays()
{
    std::mutex lock;
    QStringList lines;
    setLogSink([&](std::string_view line) {
        const std::scoped_lock guard(lock);
        lines.append(QString::fromUtf8(line.data(), qsizetype(line.size())));
    });
    DownloadItem stays = m_library->item(u"stays"_s);
    // A folder is no file that could be removed.
    QVERIFY(QDir().mkpath(m_library->path(u"folder/inner"_s)));
    stays.localFileURL = QUrl::fromLocalFile(m_library->path(u"folder"_s));
    DownloadItem goes = m_library->item(u"goes"_s);
    m_library->giveFile(goes, m_red);
    m_library->save({stays, goes});
    show();
    QTRY_VERIFY(tile(u"goes"_s));
    press(Qt::Key_A, Qt::ControlModifier);
    press(Qt::Key_Delete);
    QTRY_VERIFY_WITH_TIMEOUT(m_library->storedTitles().isEmpty(), patience);
    setLogSink({});
    QVERIFY(QFile::exists(m_library->path(u"folder"_s)));
    QVERIFY(!QFile::exists(goes.localFileURL->toLocalFile()));
    const auto tells = [&](const QString &line) {
        return line.contains(m_library->path(u"folder"_s)) && line.contains(u"not removed"_s);
    };
    QCOMPARE(std::count_if(lines.begin(), lines.end(), tells), 1);
}

void LibraryViewTest::revealsAndOpens()
{
    DownloadItem one = m_library->item(u"one"_s);
    m_library->giveFile(one, m_red);
    DownloadItem two = m_library->item(u"two"_s);
    m_library->giveFile(two, m_red);
    m_library->save({one, two});
    show();
    click(u"one"_s);
    QTRY_VERIFY(button(u"Show in Finder"_s));
    QTest::mouseClick(m_view.get(), Qt::LeftButton, {}, middle(button(u"Show in Finder"_s)));
    QCOMPARE(m_library->workspace.revealed, QList<QUrl>{*one.localFileURL});
    QTest::mouseClick(m_view.get(), Qt::LeftButton, {}, middle(button(u"Open"_s)));
    QCOMPARE(m_library->workspace.opened, QList<QUrl>{*one.localFileURL});

    // What a tile carries out: its own file, or those of the choice that it is of.
    const QString first = QString::fromLatin1(one.localFileURL->toEncoded());
    const QString second = QString::fromLatin1(two.localFileURL->toEncoded());
    QCOMPARE(screen()->draggedFiles(two.id), second);
    click(u"two"_s, Qt::ControlModifier);
    QCOMPARE(screen()->draggedFiles(two.id), first + u"\r\n"_s + second);
}

void LibraryViewTest::remembersVolumeAndDivider()
{
    DownloadItem one = m_library->item(u"one"_s);
    m_library->giveFile(one, m_red);
    m_library->save({one});
    show();
    screen()->rememberVolume(0.25, true);
    screen()->rememberPlayerWidth(444);
    show();
    click(u"one"_s);
    QTRY_VERIFY(first("veltro::player::VideoPlayer"));
    const auto *player = qobject_cast<VideoPlayer *>(first("veltro::player::VideoPlayer"));
    QCOMPARE(player->volume(), 0.25);
    QVERIFY(player->isMuted());
    QCOMPARE(first("LibraryPlayerPane_")->width(), 444.0);
    // The choice is not remembered.
    show();
    QTRY_VERIFY(tile(u"one"_s));
    QCOMPARE(screen()->selection()->count(), 0);
}

void LibraryViewTest::makesOnlyTheTilesInView()
{
    constexpr int many = 20'000;
    std::vector<DownloadItem> items;
    for (int i = 0; i < many; ++i) {
        items.push_back(m_library->item(QString::number(i)));
        items.back().fileSizeBytes = 1'000'000;
    }
    m_library->save(items);
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

void LibraryViewTest::readsOutRolesAndNames()
{
    DownloadItem one = m_library->item(u"One"_s);
    one.uploader = u"Somebody"_s;
    one.durationSeconds = 61;
    m_library->giveFile(one, m_red);
    m_library->save({one});
    show();
    click(u"One"_s);
    QTRY_VERIFY(button(u"Delete"_s));
    const auto interface = [](QObject *item) {
        return QAccessible::queryAccessibleInterface(item);
    };
    QAccessibleInterface *tileInterface = interface(tile(u"One"_s));
    QVERIFY(tileInterface);
    QCOMPARE(tileInterface->role(), QAccessible::ListItem);
    QCOMPARE(tileInterface->text(QAccessible::Name), u"One, Somebody, 1 minute 1 second"_s);
    QVERIFY(tileInterface->state().selected);
    QCOMPARE(interface(button(u"Delete"_s))->role(), QAccessible::Button);
    QCOMPARE(interface(first("QQuickGridView"))->role(), QAccessible::List);
    for (const char *type : {"IconButton_", "CapsuleButton_", "PlayerSlider_"}) {
        for (QQuickItem *item : all(type)) {
            QVERIFY2(!interface(item)->text(QAccessible::Name).isEmpty(), type);
        }
    }
    // The tile's action chooses it.
    screen()->selection()->clear();
    tileInterface->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    QCOMPARE(chosen(), QStringList{u"One"_s});
}

int main(int argc, char **argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QGuiApplication application(argc, argv);
    LibraryViewTest test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_library_view.moc"
