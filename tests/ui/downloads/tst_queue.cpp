// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "coordination/active_downloads.h"
#include "tests/ui/samples/sample_downloads.h"
#include "tests/ui/screens/screen_under_test.h"
#include "ui/downloads/download_row.h"

#include <QAccessible>
#include <QSignalSpy>
#include <QTest>

namespace veltro {

class TestQueue : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void initTestCase() { ScreenUnderTest::prepare(); }
    void init() { QTest::failOnWarning(QRegularExpression(QStringLiteral(".*"))); }

    void anEmptyQueueSaysSoAndCountsNothing();
    void theButtonClearsWhileSomethingIsFinished();
    void eachStateOffersItsOwnAction();
    void theBarFollowsTheShareAndIsNeverNarrowerThanTwo();
    void aRightClickOpensTheMenuOfThatRow();
    void aKeyOpensTheMenuAndTheMenuTheDetails();
    void tenThousandRowsAreNotAllMade();
    void aScreenReaderIsTold();
};

namespace {

constexpr auto screenFile = "qrc:/qt/qml/Veltro/Downloads/Queue.qml";

struct QueueScreen {
    explicit QueueScreen(int size)
        : screen(screenFile, {{QStringLiteral("downloads"), filled(samples, size)}})
    {}

    static QVariant filled(SampleDownloads &downloads, int size)
    {
        downloads.setSize(size);
        return QVariant::fromValue(downloads.downloads());
    }
    [[nodiscard]] QQuickItem *row(int index) const
    {
        const auto *record = samples.at(index);
        return screen.itemWhere([record](const QQuickItem &item) {
            return item.property("record").value<DownloadProgressState *>() == record;
        });
    }
    [[nodiscard]] QQuickItem *inRow(int index, const char *name) const
    {
        return ScreenUnderTest::named(row(index), name);
    }

    SampleDownloads samples;
    ScreenUnderTest screen;
};

}

void TestQueue::anEmptyQueueSaysSoAndCountsNothing()
{
    const QueueScreen queue(0);
    QVERIFY(queue.screen.named("emptyQueue")->isVisible());
    QVERIFY(!queue.screen.named("clearFinished")->isVisible());
    for (const char *counter : {"active", "queued", "done"}) {
        QCOMPARE(queue.screen.named(counter)->property("count").toInt(), 0);
    }
    QVERIFY(queue.screen.shows(QStringLiteral("Nothing in the queue")));
    QVERIFY(queue.screen.shows(QStringLiteral(
        "Paste a link on the Home tab. Active and finished downloads show up here.")));
}

void TestQueue::theButtonClearsWhileSomethingIsFinished()
{
    QueueScreen queue(8);
    QSignalSpy cleared(queue.screen.root(), queue.screen.signalNamed("clearRequested"));
    QCOMPARE(queue.screen.named("active")->property("count").toInt(), 5);
    QCOMPARE(queue.screen.named("queued")->property("count").toInt(), 1);
    QCOMPARE(queue.screen.named("done")->property("count").toInt(), 1);
    queue.screen.click(queue.screen.named("clearFinished"));
    QCOMPARE(cleared.size(), 1);
    queue.samples.downloads()->removeFinished();
    QTRY_VERIFY(!queue.screen.named("clearFinished")->isVisible());
}

void TestQueue::eachStateOffersItsOwnAction()
{
    QueueScreen queue(8);
    const auto offered = [&](int row) {
        QStringList names;
        for (const char *name : {"play", "cancel", "retry"}) {
            if (queue.inRow(row, name)->isVisible()) {
                names << QString::fromLatin1(name);
            }
        }
        return names.join(u',');
    };
    queue.screen.resize({980, 2000});
    QTRY_VERIFY(queue.row(7) != nullptr);
    QCOMPARE(offered(0), QStringLiteral("cancel"));
    QCOMPARE(offered(3), QStringLiteral("cancel"));
    QCOMPARE(offered(4), QStringLiteral("cancel"));
    QCOMPARE(offered(5), QStringLiteral("play"));
    QCOMPARE(offered(6), QStringLiteral("retry"));
    QCOMPARE(offered(7), QString());
    QCOMPARE(queue.inRow(5, "play")->size(), QSizeF(28, 28));

    QSignalSpy played(queue.screen.root(), queue.screen.signalNamed("playRequested"));
    queue.screen.click(queue.inRow(5, "play"));
    QCOMPARE(played.size(), 1);
    QCOMPARE(played[0][0].toUrl(), queue.samples.at(5)->localFileURL().value());
    QSignalSpy cancelled(queue.screen.root(), queue.screen.signalNamed("cancelRequested"));
    queue.screen.click(queue.inRow(4, "cancel"));
    QCOMPARE(cancelled.size(), 1);
    QCOMPARE(cancelled[0][0].value<DownloadProgressState *>(), queue.samples.at(4));
    QSignalSpy retried(queue.screen.root(), queue.screen.signalNamed("retryRequested"));
    queue.screen.click(queue.inRow(6, "retry"));
    QCOMPARE(retried.size(), 1);
}

void TestQueue::theBarFollowsTheShareAndIsNeverNarrowerThanTwo()
{
    QueueScreen queue(1);
    DownloadProgressState *record = queue.samples.at(0);
    const QQuickItem *bar = queue.inRow(0, "bar");
    const QQuickItem *filled = queue.inRow(0, "filled");
    record->apply(DownloadProgressed{0, 1000, {}, {}, {}, {}});
    QTRY_COMPARE(filled->width(), 2.0);
    record->apply(DownloadProgressed{1700, 1000, {}, {}, {}, {}});
    QTRY_COMPARE(filled->width(), bar->width());
    record->apply(DownloadProgressed{0, {}, {}, {}, 3, 12});
    QTRY_COMPARE(filled->width(), bar->width() / 4);
    record->apply(DownloadProgressed{0, {}, {}, {}, {}, {}});
    QVERIFY(!bar->isVisible());
}

void TestQueue::aRightClickOpensTheMenuOfThatRow()
{
    QueueScreen queue(2);
    QSignalSpy copied(queue.screen.root(), queue.screen.signalNamed("copyRequested"));
    queue.screen.click(queue.inRow(1, "host"), Qt::RightButton);
    QTRY_VERIFY(queue.screen.withText("Copy Link") != nullptr);
    queue.screen.click(queue.screen.withText("Copy Link"));
    QTRY_COMPARE(copied.size(), 1);
    QCOMPARE(copied[0][0].toString(), QStringLiteral("https://video.example/watch?v=1"));
}

void TestQueue::aKeyOpensTheMenuAndTheMenuTheDetails()
{
    QueueScreen queue(7);
    queue.screen.resize({980, 2000});
    QTRY_VERIFY(queue.row(6) != nullptr);
    queue.row(6)->forceActiveFocus();
    QTest::keyClick(queue.screen.window(), Qt::Key_F10, Qt::ShiftModifier);
    QTRY_VERIFY(queue.screen.withText("Show Details…") != nullptr);
    queue.screen.click(queue.screen.withText("Show Details…"));
    QTRY_VERIFY(queue.screen.withText("HTTP Error 403: Forbidden") != nullptr);
    QTest::keyClick(queue.screen.window(), Qt::Key_Escape);
    QTRY_VERIFY(queue.screen.withText("HTTP Error 403: Forbidden") == nullptr);
}

void TestQueue::tenThousandRowsAreNotAllMade()
{
    const QueueScreen queue(10'000);
    QCOMPARE(queue.screen.named("active")->property("count").toInt(), 6250);
    int rows = 0;
    (void)queue.screen.itemWhere([&rows](const QQuickItem &item) {
        rows += item.property("record").isValid() && item.property("download").isValid() ? 1 : 0;
        return false;
    });
    QVERIFY2(rows >= 4 && rows < 40, qPrintable(QString::number(rows)));
}

void TestQueue::aScreenReaderIsTold()
{
    const QueueScreen queue(7);
    const auto spoken = [](QQuickItem *item) {
        QAccessibleInterface *interface = QAccessible::queryAccessibleInterface(item);
        return interface->text(QAccessible::Name) + u'|' +
               interface->text(QAccessible::Description);
    };
    QCOMPARE(spoken(queue.screen.named("clearFinished")),
             QStringLiteral("Clear finished downloads|"));
    QCOMPARE(spoken(queue.row(3)).section(u'|', 1),
             QStringLiteral("Processing, Merger, 84.3 MB of 84.3 MB, video.example"));
    QCOMPARE(spoken(queue.inRow(0, "cancel")), QStringLiteral("Cancel|A walk along the harbour"));
    QCOMPARE(spoken(queue.screen.named("queued")), QStringLiteral("Queued: 1|"));
    QCOMPARE(QAccessible::queryAccessibleInterface(queue.row(0))->role(), QAccessible::ListItem);
}

}

QTEST_MAIN(veltro::TestQueue)
#include "tst_queue.moc"
