// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "coordination/download_progress_state.h"

#include <QMetaProperty>
#include <QSignalSpy>
#include <QTest>

using namespace veltro;

namespace {

DownloadOrder order()
{
    return {QUuid::createUuid(), QUrl(QStringLiteral("https://example.org/watch")),
            QStringLiteral("137+140"), QStringLiteral("1080p")};
}

/// Counts what each property tells, by the property's name.
class Notices : public QObject {
    Q_OBJECT
public:
    explicit Notices(DownloadProgressState &record)
    {
        const QMetaObject *const type = record.metaObject();
        const QMetaMethod slot = metaObject()->method(metaObject()->indexOfSlot("count()"));
        for (int index = type->propertyOffset(); index < type->propertyCount(); ++index) {
            if (type->property(index).hasNotifySignal()) {
                connect(&record, type->property(index).notifySignal(), this, slot);
            }
        }
    }
    /// What was told since the last call, in order.
    QStringList take() { return std::exchange(m_told, {}); }

public Q_SLOTS:
    void count()
    {
        const QMetaMethod told = sender()->metaObject()->method(senderSignalIndex());
        m_told.append(QString::fromLatin1(told.name()).chopped(qsizetype(sizeof "Changed" - 1)));
    }

private:
    QStringList m_told;
};

DownloadProgressed progress(qint64 done, std::optional<qint64> total)
{
    DownloadProgressed event;
    event.bytesDone = done;
    event.bytesTotal = total;
    return event;
}

}

class TestDownloadProgressState : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void aRunMovesTheRecordThroughItsStates();
    void aPropertyTellsOfAChangeAndOfNothingElse();
    void aReportClearsWhatItDoesNotKnow();
    void theFractionFollowsFragmentsBeforeBytes_data();
    void theFractionFollowsFragmentsBeforeBytes();
};

void TestDownloadProgressState::aRunMovesTheRecordThroughItsStates()
{
    DownloadProgressState record(order());
    MediaInfo info;
    info.title = QStringLiteral("A film");
    record.apply(progress(1, 2));
    QCOMPARE(record.state().kind, ItemState::Kind::queued);
    QCOMPARE(record.title(), QStringLiteral("1080p"));
    record.apply(DownloadStarted{info});
    QCOMPARE(record.state().kind, ItemState::Kind::running);
    QCOMPARE(record.title(), QStringLiteral("A film"));
    QCOMPARE(record.formatLabel(), QStringLiteral("1080p"));
    record.apply(DownloadPostProcessing{QStringLiteral("Merging")});
    QCOMPARE(record.state(), ItemState::postProcessing(QStringLiteral("Merging")));
    const QUrl file = QUrl::fromLocalFile(QStringLiteral("/films/A film.mp4"));
    record.apply(DownloadFinished{file});
    QCOMPARE(record.state().kind, ItemState::Kind::done);
    QCOMPARE(record.localFileURL().value_or(QUrl()), file);
    QCOMPARE(record.title(), QStringLiteral("A film"));

    DownloadProgressState undescribed(order());
    undescribed.apply(DownloadFinished{file});
    QCOMPARE(undescribed.title(), QStringLiteral("1080p"));
}

void TestDownloadProgressState::aPropertyTellsOfAChangeAndOfNothingElse()
{
    DownloadProgressState record(order());
    Notices notices(record);
    DownloadProgressed event = progress(10, 100);
    event.speed = 5.0;
    event.eta = 18.0;
    record.apply(event);
    QCOMPARE(notices.take(),
             (QStringList{QStringLiteral("bytesDone"), QStringLiteral("bytesTotal"),
                          QStringLiteral("speedBytesPerSecond"), QStringLiteral("etaSeconds")}));
    record.apply(event);
    QCOMPARE(notices.take(), QStringList());
    event.bytesDone = 20;
    event.fragmentIndex = 1;
    event.fragmentCount = 4;
    record.apply(event);
    QCOMPARE(notices.take(),
             (QStringList{QStringLiteral("bytesDone"), QStringLiteral("fragmentIndex"),
                          QStringLiteral("fragmentCount")}));
    for (int repeat = 0; repeat < 2; ++repeat) {
        record.apply(DownloadPostProcessing{QStringLiteral("Merging")});
    }
    record.apply(DownloadPostProcessing{QStringLiteral("Converting")});
    QCOMPARE(notices.take(), (QStringList{QStringLiteral("state"), QStringLiteral("state")}));
    for (int repeat = 0; repeat < 2; ++repeat) {
        record.apply(DownloadFinished{QUrl::fromLocalFile(QStringLiteral("/a"))});
    }
    QCOMPARE(notices.take(),
             (QStringList{QStringLiteral("localFileURL"), QStringLiteral("state")}));
    record.setFormatLabel(record.formatLabel());
    QCOMPARE(notices.take(), QStringList());
}

void TestDownloadProgressState::aReportClearsWhatItDoesNotKnow()
{
    DownloadProgressState record(order());
    DownloadProgressed event = progress(10, 100);
    event.speed = 1.0;
    event.fragmentIndex = 1;
    event.fragmentCount = 2;
    record.apply(event);
    QCOMPARE(record.fraction().value_or(-1), 0.5);
    record.apply(progress(20, 100));
    QCOMPARE(record.fraction().value_or(-1), 0.2);
    record.apply(progress(30, std::nullopt));
    QVERIFY(!record.fraction());
    QVERIFY(!record.speedBytesPerSecond());
    QVERIFY(!record.fragmentIndex());
}

void TestDownloadProgressState::theFractionFollowsFragmentsBeforeBytes_data()
{
    using Number = std::optional<qint64>;
    QTest::addColumn<qint64>("done");
    QTest::addColumn<Number>("total");
    QTest::addColumn<Number>("index");
    QTest::addColumn<Number>("count");
    QTest::addColumn<std::optional<double>>("fraction");
    const auto row = [](const char *why, qint64 done, Number total, Number index, Number count,
                        std::optional<double> fraction) {
        QTest::newRow(why) << done << total << index << count << fraction;
    };
    row("nothing known", 5, {}, {}, {}, {});
    row("bytes", 5, 20, {}, {}, 0.25);
    row("more bytes than announced", 30, 20, {}, {}, 1.5);
    row("a total of nothing", 5, 0, {}, {}, {});
    row("fragments win", 5, 20, 3, 4, 0.75);
    row("fragments without a total", 5, {}, 3, 4, 0.75);
    row("an index past the count", 5, 20, 9, 4, 1.0);
    row("a count of nothing", 5, 20, 3, 0, 0.25);
    row("a count below nothing", 5, {}, 3, -1, {});
    row("an index alone", 5, 20, 3, {}, 0.25);
    row("a count alone", 5, 20, {}, 4, 0.25);
    row("one of one", 0, {}, 1, 1, 1.0);
}

void TestDownloadProgressState::theFractionFollowsFragmentsBeforeBytes()
{
    QFETCH(qint64, done);
    QFETCH(std::optional<qint64>, total);
    QFETCH(std::optional<qint64>, index);
    QFETCH(std::optional<qint64>, count);
    QFETCH(std::optional<double>, fraction);
    DownloadProgressState record(order());
    DownloadProgressed event = progress(done, total);
    event.fragmentIndex = index;
    event.fragmentCount = count;
    record.apply(event);
    QCOMPARE(record.fraction(), fraction);
}

QTEST_GUILESS_MAIN(TestDownloadProgressState)
#include "tst_download_progress_state.moc"
