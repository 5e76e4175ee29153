// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "coordination/active_downloads.h"

#include <QAbstractItemModelTester>
#include <QSignalSpy>
#include <QTest>

using namespace veltro;

namespace {

using Kind = ItemState::Kind;
using Record = ActiveDownloads::Record;

Record makeRecord(Kind kind = Kind::queued)
{
    auto record = std::make_shared<DownloadProgressState>(
        DownloadOrder{QUuid::createUuid(), QUrl(QStringLiteral("https://example.org")), {}, {}});
    record->setState({kind, {}});
    return record;
}

/// The rows' states, one letter each.
QString rows(const ActiveDownloads &downloads)
{
    QString letters;
    for (int row = 0; row < downloads.count(); ++row) {
        letters.append(u"qrpdfc"[int(downloads.record(row)->state().kind)]);
    }
    return letters;
}

}

class TestActiveDownloads : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void recordsStandInTheOrderOfTheirComing();
    void countsFollowTheStates();
    void aCountTellsOnlyOfItsOwnChange();
    void aRemovedRecordIsCountedNoMore();
    void clearingRemovesRunsOfRowsAndKeepsTheRest();
};

void TestActiveDownloads::recordsStandInTheOrderOfTheirComing()
{
    ActiveDownloads downloads;
    const QAbstractItemModelTester tester(&downloads,
                                          QAbstractItemModelTester::FailureReportingMode::QtTest);
    const std::array records{makeRecord(), makeRecord(), makeRecord()};
    for (const Record &record : records) {
        downloads.append(record);
    }
    const QVariant shown = downloads.data(downloads.index(1), ActiveDownloads::recordRole);
    QCOMPARE(shown.value<DownloadProgressState *>(), records[1].get());
    QCOMPARE(downloads.rowOf(records[2]->id()), 2);
    QCOMPARE(downloads.find(records[2]->id()), records[2]);

    downloads.remove(records[1]->id());
    QCOMPARE(downloads.rowOf(records[2]->id()), 1);
    QCOMPARE(downloads.rowOf(records[1]->id()), -1);
    QVERIFY(!downloads.find(records[1]->id()));
    downloads.remove(records[1]->id());
    QCOMPARE(downloads.count(), 2);
}

void TestActiveDownloads::countsFollowTheStates()
{
    ActiveDownloads downloads;
    const Record record = makeRecord();
    downloads.append(record);
    downloads.append(makeRecord(Kind::failed));
    struct Step {
        Kind kind;
        int active, queued, done, finished;
    };
    const std::array steps{
        Step{Kind::queued, 1, 1, 0, 1},         Step{Kind::running, 1, 0, 0, 1},
        Step{Kind::postProcessing, 1, 0, 0, 1}, Step{Kind::done, 0, 0, 1, 2},
        Step{Kind::failed, 0, 0, 0, 2},         Step{Kind::cancelled, 0, 0, 0, 2}};
    for (const Step &step : steps) {
        record->setState({step.kind, {}});
        QCOMPARE(downloads.activeCount(), step.active);
        QCOMPARE(downloads.queuedCount(), step.queued);
        QCOMPARE(downloads.doneCount(), step.done);
        QCOMPARE(downloads.finishedCount(), step.finished);
    }
}

void TestActiveDownloads::aCountTellsOnlyOfItsOwnChange()
{
    ActiveDownloads downloads;
    const Record record = makeRecord();
    const QSignalSpy active(&downloads, &ActiveDownloads::activeCountChanged);
    const QSignalSpy queued(&downloads, &ActiveDownloads::queuedCountChanged);
    const QSignalSpy done(&downloads, &ActiveDownloads::doneCountChanged);
    const QSignalSpy finished(&downloads, &ActiveDownloads::finishedCountChanged);
    downloads.append(record);
    record->setState({Kind::running, {}});
    record->setState(ItemState::postProcessing(QStringLiteral("a")));
    record->setState(ItemState::postProcessing(QStringLiteral("b")));
    QCOMPARE(active.count(), 1);
    QCOMPARE(queued.count(), 2);
    QCOMPARE(done.count() + finished.count(), 0);
    record->setState({Kind::done, {}});
    QCOMPARE(active.count(), 2);
    QCOMPARE(done.count(), 1);
    QCOMPARE(finished.count(), 1);
}

void TestActiveDownloads::aRemovedRecordIsCountedNoMore()
{
    ActiveDownloads downloads;
    const Record record = makeRecord(Kind::running);
    downloads.append(record);
    downloads.remove(record->id());
    QCOMPARE(downloads.activeCount(), 0);
    record->setState({Kind::cancelled, {}});
    QCOMPARE(downloads.finishedCount(), 0);
    QCOMPARE(downloads.activeCount(), 0);
}

void TestActiveDownloads::clearingRemovesRunsOfRowsAndKeepsTheRest()
{
    ActiveDownloads downloads;
    const QAbstractItemModelTester tester(&downloads,
                                          QAbstractItemModelTester::FailureReportingMode::QtTest);
    for (const Kind kind : {Kind::done, Kind::failed, Kind::queued, Kind::cancelled, Kind::running,
                            Kind::postProcessing, Kind::done, Kind::done}) {
        downloads.append(makeRecord(kind));
    }
    const QSignalSpy removals(&downloads, &QAbstractItemModel::rowsRemoved);
    downloads.removeFinished();
    QCOMPARE(rows(downloads), QStringLiteral("qrp"));
    QCOMPARE(removals.count(), 3);
    QCOMPARE(downloads.finishedCount(), 0);
    QCOMPARE(downloads.activeCount(), 3);
    downloads.removeFinished();
    QCOMPARE(removals.count(), 3);
}

QTEST_GUILESS_MAIN(TestActiveDownloads)
#include "tst_active_downloads.moc"
