// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/log.h"
#include "tests/ui/library/library_screen_test.h"
#include "ui/player/video_player.h"

#include <QDir>
#include <QTest>

#include <algorithm>
#include <mutex>

using namespace Qt::StringLiterals;
using namespace veltro;
using player::VideoPlayer;

/// What is done with what is chosen: it plays, is shown elsewhere, is deleted.
class LibraryChoiceTest : public LibraryScreenTest {
    Q_OBJECT

private Q_SLOTS:
    void aClickPlaysAndAnotherPlaysTheOther();
    void manyAreCountedSummedAndDeleted();
    void theMenuLeavesTheChoiceAlone();
    void deletingGoesOnWhereAFileStays();
    void revealsAndOpens();
    void remembersVolumeAndDivider();
};

void LibraryChoiceTest::aClickPlaysAndAnotherPlaysTheOther()
{
    const DownloadItem one = film(u"one"_s);
    const DownloadItem two = film(u"two"_s);
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

void LibraryChoiceTest::manyAreCountedSummedAndDeleted()
{
    DownloadItem one = film(u"one"_s);
    DownloadItem two = m_library->item(u"two"_s);
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
    m_view->click(deletes);
    QTRY_COMPARE_WITH_TIMEOUT(screen()->items()->rowCount(), 1, patience);
    QVERIFY(shownText(u"Pick a clip"_s));
    QCOMPARE(m_library->storedTitles(), QStringList{u"three"_s});
    QVERIFY(!QFile::exists(one.localFileURL->toLocalFile()));
    QVERIFY(QFile::exists(one.thumbnailFileURL->toLocalFile()));
}

void LibraryChoiceTest::theMenuLeavesTheChoiceAlone()
{
    const DownloadItem one = film(u"one"_s);
    m_library->save({one, m_library->item(u"two"_s), m_library->item(u"three"_s)});
    show();
    click(u"two"_s);
    // It takes the keys when it has come up.
    const auto openMenu = [&](const QString &title) {
        QTest::mouseClick(window(), Qt::RightButton, {}, middle(tile(title)));
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
    m_view->click(all("MenuItem_").last());
    QTRY_COMPARE_WITH_TIMEOUT(m_library->storedTitles(), QStringList{u"one"_s}, patience);
    QVERIFY(QFile::exists(one.localFileURL->toLocalFile()));
}

void LibraryChoiceTest::deletingGoesOnWhereAFileStays()
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
    const DownloadItem goes = film(u"goes"_s);
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

void LibraryChoiceTest::revealsAndOpens()
{
    const DownloadItem one = film(u"one"_s);
    const DownloadItem two = film(u"two"_s);
    m_library->save({one, two});
    show();
    click(u"one"_s);
    QTRY_VERIFY(button(u"Show in Finder"_s));
    m_view->click(button(u"Show in Finder"_s));
    QCOMPARE(m_library->workspace.revealed, QList<QUrl>{*one.localFileURL});
    m_view->click(button(u"Open"_s));
    QCOMPARE(m_library->workspace.opened, QList<QUrl>{*one.localFileURL});
}

void LibraryChoiceTest::remembersVolumeAndDivider()
{
    const DownloadItem one = film(u"one"_s);
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

QTEST_MAIN(LibraryChoiceTest)
#include "tst_library_choice.moc"
