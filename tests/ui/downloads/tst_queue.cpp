// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "coordination/active_downloads.h"
#include "tests/ui/samples/sample_downloads.h"
#include "tests/ui/screens/screen_under_test.h"
#include "ui/downloads/download_row.h"

#include <QSignalSpy>
#include <QTest>

using namespace Qt::StringLiterals;

namespace veltro {

class TestQueue : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void init() { QTest::failOnWarning(QRegularExpression(u".*"_s)); }

    void theButtonClearsWhileSomethingIsFinished();
    void eachStateOffersItsOwnAction();
    void theBarFollowsTheShareAndIsNeverNarrowerThanTwo();
    void aRightClickOpensTheMenuOfThatRow();
    void tenThousandRowsAreNotAllMade();
};

namespace {

constexpr auto screenFile = "qrc:/qt/qml/Veltro/Downloads/Queue.qml";

struct QueueScreen {
    explicit QueueScreen(int size) : screen(screenFile, {{u"downloads"_s, filled(samples, size)}})
    {}

    static QVariant filled(SampleDownloads &downloads, int size)
    {
        downloads.setSize(size);
        return QVariant::fromValue(downloads.downloads());
    }
    [[nodiscard]] QQuickItem *row(int index) const
    {
        return screen
            .items([record = samples.at(index)](const QQuickItem &item) {
                return item.property("record").value<DownloadProgressState *>() == record;
            })
            .value(0);
    }
    [[nodiscard]] QQuickItem *inRow(int index, const char *name) const
    {
        return ScreenUnderTest::named(row(index), name);
    }

    SampleDownloads samples;
    ScreenUnderTest screen;
};

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
    QCOMPARE(offered(0), u"cancel"_s);
    QCOMPARE(offered(3), u"cancel"_s);
    QCOMPARE(offered(4), u"cancel"_s);
    QCOMPARE(offered(5), u"play"_s);
    QCOMPARE(offered(6), u"retry"_s);
    QCOMPARE(offered(7), QString());
    QCOMPARE(queue.inRow(5, "play")->size(), QSizeF(28, 28));

    QSignalSpy played(queue.screen.root(), queue.screen.signalNamed("playRequested"));
    queue.screen.click(queue.inRow(5, "play"));
    QCOMPARE(played.size(), 1);
    QCOMPARE(played[0][0].toUrl(), queue.samples.at(5)->localFileURL().value());
    queue.samples.at(5)->setLocalFileURL(std::nullopt);
    QCOMPARE(offered(5), QString());
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
    record->apply(DownloadProgressed{0, 1000, {}, {}, -3, 12});
    QTRY_COMPARE(filled->width(), 2.0);
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
    QCOMPARE(copied[0][0].toString(), u"https://video.example/watch?v=1"_s);
}

void TestQueue::tenThousandRowsAreNotAllMade()
{
    const QueueScreen queue(10'000);
    QCOMPARE(queue.screen.named("active")->property("count").toInt(), 6250);
    const auto rows =
        queue.screen
            .items([](const QQuickItem &item) {
                return item.property("record").isValid() && item.property("download").isValid();
            })
            .size();
    QVERIFY2(rows >= 4 && rows < 40, qPrintable(QString::number(rows)));
}

}

QTEST_MAIN(veltro::TestQueue)
#include "tst_queue.moc"
