// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
// The queue and its runs, with the real engine on pages of the test site.
#include "tests/coordination/coordinator_bench.h"

#include <QSignalSpy>
#include <QTest>

using namespace veltro;

using Kind = ItemState::Kind;
using Record = MacAppStore::Record;

class TestCoordinatorRuns : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void init();
    void cleanup();
    void aDownloadGoesFromTheQueueToTheLibrary();
    void aRunWaitsForTheOneBeforeHoweverThatEnds_data();
    void aRunWaitsForTheOneBeforeHoweverThatEnds();
    void whatIsCancelledInTheQueueNeverReachesTheEngine();
    void whatIsCancelledWhileItRunsEndsAsCancelled();
    void whatIsCancelledWhileItIsReencodedKeepsItsFileAndIsNotAnnounced();
    void cancellingWhatIsDoneOnlyRemovesIt();
    void aFailureIsShownAndHeard();
    void anotherTryTakesTheSameFormatElseTheFirst();
    void anotherTryThatCannotBeProbedLeavesTheRecord();
    void anotherTryWithoutFormatsLeavesTheRecord();
    void aNoticeIsPostedOnlyWhenTheProgramIsInTheBackground();
    void theNameTemplateIsReadWhenTheRunBegins();
    void clearingKeepsWhatIsNotOver();
    void tenThousandCancelledDownloadsAreSkipped();
    void whatWaitsEndsWithoutEffectWhenTheCoordinatorIsGone();

private:
    [[nodiscard]] bool isAt(const Record &record, Kind kind) const
    {
        return record->state().kind == kind;
    }
    [[nodiscard]] bool isDownloading(const Record &record) const
    {
        return isAt(record, Kind::running) && record->bytesDone() > 0;
    }

    std::unique_ptr<CoordinatorBench> m_bench;
};

#define TRY(condition) QTRY_VERIFY_WITH_TIMEOUT(condition, CoordinatorBench::patience)

void TestCoordinatorRuns::init()
{
    m_bench = std::make_unique<CoordinatorBench>();
}

void TestCoordinatorRuns::cleanup()
{
    m_bench->site.release();
    m_bench->close();
    TRY(!m_bench->engine.hasRuns());
}

void TestCoordinatorRuns::aDownloadGoesFromTheQueueToTheLibrary()
{
    QStringList banners;
    connect(&m_bench->store(), &MacAppStore::startedToastChanged, this,
            [&] { banners.append(m_bench->store().startedToastText()); });
    Format format;
    format.id = QStringLiteral("best");
    format.ext = QStringLiteral("mp4");
    const Record record = m_bench->queue(QStringLiteral("/jsonld"));
    QCOMPARE(record->title(), format.label());
    QVERIFY(isAt(record, Kind::queued));
    QVERIFY(banners.isEmpty()); // the run begins in a turn of its own
    TRY(m_bench->store().inFlightTask()->isFinished());

    QVERIFY2(isAt(record, Kind::done), qPrintable(record->state().text));
    QCOMPARE(banners, QStringList{format.label()});
    QVERIFY(record->title() != format.label());
    const QUrl file = record->localFileURL().value_or(QUrl());
    QVERIFY(QFileInfo::exists(file.toLocalFile()));
    QCOMPARE(QFileInfo(file.toLocalFile()).path(), downloadsDirectory().toLocalFile());
    QCOMPARE(m_bench->store().completedToastValue(),
             (CompletedToast{record->id(), record->title(), file}));
    QCOMPARE(m_bench->savedTitles(), QStringList{record->title()});
    QCOMPARE(m_bench->workspace.ticks, 1);
    QCOMPARE(m_bench->workspace.beeps, 0);
    QVERIFY(m_bench->notices.posted.empty());
}

void TestCoordinatorRuns::aRunWaitsForTheOneBeforeHoweverThatEnds_data()
{
    QTest::addColumn<QString>("page");
    QTest::addColumn<bool>("cancels");
    QTest::addColumn<int>("ending");
    QTest::newRow("done") << QStringLiteral("/held") << false << int(Kind::done);
    QTest::newRow("failed") << QStringLiteral("/missing/media") << false << int(Kind::failed);
    QTest::newRow("cancelled") << QStringLiteral("/held") << true << int(Kind::cancelled);
}

void TestCoordinatorRuns::aRunWaitsForTheOneBeforeHoweverThatEnds()
{
    QFETCH(QString, page);
    QFETCH(bool, cancels);
    QFETCH(int, ending);
    const Record first = m_bench->queue(page);
    const Record second = m_bench->queue(QStringLiteral("/plain"));
    Kind firstWhenSecondBegan = Kind::queued;
    connect(second.get(), &DownloadProgressState::stateChanged, this, [&] {
        if (isAt(second, Kind::running)) {
            firstWhenSecondBegan = first->state().kind;
        }
    });
    if (page == QStringLiteral("/held")) {
        TRY(isDownloading(first));
        QVERIFY(isAt(second, Kind::queued));
        QCOMPARE(m_bench->site.requestCount(QStringLiteral("/plain")), 0);
    }
    if (cancels) {
        m_bench->store().cancel(first->id());
    }
    m_bench->site.release();
    TRY(isAt(second, Kind::done));
    QCOMPARE(int(firstWhenSecondBegan), ending);
}

void TestCoordinatorRuns::whatIsCancelledInTheQueueNeverReachesTheEngine()
{
    const Record first = m_bench->queue(QStringLiteral("/held"));
    const Record second = m_bench->queue(QStringLiteral("/sources"));
    const Record third = m_bench->queue(QStringLiteral("/plain"));
    TRY(isDownloading(first));
    m_bench->store().cancel(second->id());
    QCOMPARE(m_bench->downloads().count(), 2);
    m_bench->site.release();
    TRY(isAt(third, Kind::done));
    QCOMPARE(m_bench->site.requestCount(QStringLiteral("/sources")), 0);
    QVERIFY(isAt(second, Kind::queued));
}

void TestCoordinatorRuns::whatIsCancelledWhileItRunsEndsAsCancelled()
{
    m_bench->isActive = false;
    const Record record = m_bench->queue(QStringLiteral("/held"));
    TRY(isDownloading(record));
    m_bench->store().cancel(record->id());
    QCOMPARE(m_bench->downloads().count(), 0);
    QVERIFY(!m_bench->store().inFlightTask()->isFinished());
    m_bench->site.release();
    TRY(m_bench->store().inFlightTask()->isFinished());
    QVERIFY(isAt(record, Kind::cancelled));
    QVERIFY(!m_bench->store().hasCompletedToast());
    QVERIFY(m_bench->savedTitles().isEmpty());
    QCOMPARE(m_bench->workspace.beeps + m_bench->workspace.ticks, 0);
    QVERIFY(m_bench->notices.posted.empty());
}

void TestCoordinatorRuns::whatIsCancelledWhileItIsReencodedKeepsItsFileAndIsNotAnnounced()
{
    m_bench->isActive = false;
    const Record record = m_bench->queue(QStringLiteral("/codec/mpeg4-mp3"));
    bool wasCancelled = false;
    connect(record.get(), &DownloadProgressState::stateChanged, this, [&] {
        if (isAt(record, Kind::postProcessing) && !std::exchange(wasCancelled, true)) {
            m_bench->store().cancel(record->id());
        }
    });
    TRY(m_bench->store().inFlightTask()->isFinished());
    QVERIFY(wasCancelled);
    QVERIFY(isAt(record, Kind::cancelled));
    QCOMPARE(m_bench->savedFiles().size(), 1);
    QVERIFY(!m_bench->store().hasCompletedToast());
    QVERIFY(m_bench->savedTitles().isEmpty());
    QCOMPARE(m_bench->workspace.beeps + m_bench->workspace.ticks, 0);
    QVERIFY(m_bench->notices.posted.empty());
}

void TestCoordinatorRuns::cancellingWhatIsDoneOnlyRemovesIt()
{
    const Record record = m_bench->queue(QStringLiteral("/plain"));
    connect(record.get(), &DownloadProgressState::stateChanged, this, [&] {
        if (isAt(record, Kind::done)) {
            m_bench->store().cancel(record->id()); // the run has yet to reach the library
        }
    });
    TRY(m_bench->store().inFlightTask()->isFinished());
    QVERIFY(isAt(record, Kind::done));
    QCOMPARE(m_bench->downloads().count(), 0);
    QCOMPARE(m_bench->savedTitles(), QStringList{record->title()});
}

void TestCoordinatorRuns::aFailureIsShownAndHeard()
{
    m_bench->isActive = false;
    const Record record = m_bench->queue(QStringLiteral("/missing/media"));
    TRY(m_bench->store().inFlightTask()->isFinished());
    QVERIFY(isAt(record, Kind::failed));
    QVERIFY2(record->state().text.contains(QStringLiteral("404")),
             qPrintable(record->state().text));
    QCOMPARE(m_bench->workspace.beeps, 1);
    QCOMPARE(m_bench->workspace.ticks, 0);
    QVERIFY(m_bench->savedTitles().isEmpty());
    QVERIFY(!m_bench->store().showEngineError());
    QVERIFY(m_bench->notices.posted.empty());
    QCOMPARE(m_bench->downloads().finishedCount(), 1);
}

void TestCoordinatorRuns::anotherTryTakesTheSameFormatElseTheFirst()
{
    m_bench->site.addRule(QStringLiteral("match=/media/&status=500"));
    const QList<QString> wanted{QStringLiteral("0"), QStringLiteral("gone")};
    for (const QString &formatID : wanted) {
        const Record failed = m_bench->queue(QStringLiteral("/sources"), formatID);
        TRY(isAt(failed, Kind::failed));
        std::optional<MediaInfo> info;
        m_bench->store().beginLink(failed->url());
        TRY(m_bench->store().hasPendingFormatPick());
        const std::vector<Format> formats = m_bench->store().pendingFormatPick()->info.formats;
        m_bench->store().setPendingFormatPick(std::nullopt);
        QVERIFY(formats.size() == 2);
        m_bench->store().beginRetry(failed->id());
        TRY(!m_bench->downloads().contains(failed->id()));
        const Record again = m_bench->downloads().record(m_bench->downloads().count() - 1);
        QVERIFY(again->id() != failed->id());
        QCOMPARE(again->url(), failed->url());
        const bool isOffered =
            std::any_of(formats.begin(), formats.end(),
                        [&](const Format &format) { return format.id == formatID; });
        QCOMPARE(again->formatID(), isOffered ? formatID : formats.front().id);
        TRY(m_bench->store().inFlightTask()->isFinished());
    }
}

void TestCoordinatorRuns::anotherTryThatCannotBeProbedLeavesTheRecord()
{
    const Record failed = m_bench->queue(QStringLiteral("/missing/media"));
    TRY(isAt(failed, Kind::failed));
    m_bench->site.addRule(QStringLiteral("match=/missing/media&status=410"));
    m_bench->store().beginRetry(failed->id());
    TRY(m_bench->store().showEngineError());
    QVERIFY(m_bench->store().engineErrorText().contains(QStringLiteral("410")));
    QVERIFY(m_bench->downloads().contains(failed->id()));
    QCOMPARE(m_bench->downloads().count(), 1);
}

void TestCoordinatorRuns::anotherTryWithoutFormatsLeavesTheRecord()
{
    const Record record = m_bench->queue(QStringLiteral("/rss")); // a list has no formats itself
    TRY(m_bench->store().inFlightTask()->isFinished());
    bool isOver = false;
    const auto wait = [](MacAppStore *store, Record tried, bool *over) -> QCoro::Task<void> {
        co_await store->retry(tried);
        *over = true;
    };
    wait(&m_bench->store(), record, &isOver);
    TRY(isOver);
    QVERIFY(!m_bench->store().showEngineError());
    QVERIFY(m_bench->downloads().contains(record->id()));
    QCOMPARE(m_bench->downloads().count(), 1);
}

void TestCoordinatorRuns::aNoticeIsPostedOnlyWhenTheProgramIsInTheBackground()
{
    m_bench->isActive = false;
    const Record record = m_bench->queue(QStringLiteral("/plain"));
    connect(record.get(), &DownloadProgressState::bytesDoneChanged, this,
            [&] { QVERIFY(m_bench->notices.posted.empty()); });
    TRY(m_bench->store().inFlightTask()->isFinished());
    QCOMPARE(m_bench->notices.posted.size(), std::size_t(1));
    QCOMPARE(m_bench->notices.posted.front().title, QStringLiteral("Saved to your library"));
    QCOMPARE(m_bench->notices.posted.front().body, record->title());

    m_bench->isActive = true;
    m_bench->queue(QStringLiteral("/sources"));
    TRY(m_bench->store().inFlightTask()->isFinished());
    QCOMPARE(m_bench->notices.posted.size(), std::size_t(1));
}

void TestCoordinatorRuns::theNameTemplateIsReadWhenTheRunBegins()
{
    const Record first = m_bench->queue(QStringLiteral("/held"));
    const Record second = m_bench->queue(QStringLiteral("/plain"));
    TRY(isDownloading(first));
    Preferences preferences = m_bench->store().preferences();
    preferences.outputTemplate = QStringLiteral("renamed.%(ext)s");
    preferences.extractAudioByDefault = true; // kept for the user, and no matter of a run
    preferences.writeSubtitles = false;
    m_bench->store().setPreferences(preferences);
    m_bench->site.release();
    TRY(isAt(second, Kind::done));
    QVERIFY(first->localFileURL()->fileName() != QStringLiteral("renamed.mp4"));
    QCOMPARE(second->localFileURL()->fileName(), QStringLiteral("renamed.mp4"));
}

void TestCoordinatorRuns::clearingKeepsWhatIsNotOver()
{
    const Record done = m_bench->queue(QStringLiteral("/plain"));
    const Record failed = m_bench->queue(QStringLiteral("/missing/media"));
    const Record running = m_bench->queue(QStringLiteral("/held"));
    const Record queued = m_bench->queue(QStringLiteral("/sources"));
    TRY(isDownloading(running));
    m_bench->store().clearFinished();
    QCOMPARE(m_bench->downloads().count(), 2);
    QCOMPARE(m_bench->downloads().record(0), running);
    QCOMPARE(m_bench->downloads().record(1), queued);
    m_bench->store().cancel(queued->id());
}

void TestCoordinatorRuns::tenThousandCancelledDownloadsAreSkipped()
{
    constexpr int many = 10'000;
    const Record first = m_bench->queue(QStringLiteral("/held"));
    TRY(isDownloading(first));
    for (int index = 0; index < many; ++index) {
        m_bench->queue(QStringLiteral("/sources"));
    }
    const Record last = m_bench->queue(QStringLiteral("/plain"));
    QCOMPARE(m_bench->downloads().queuedCount(), many + 1);
    while (m_bench->downloads().count() > 2) {
        m_bench->store().cancel(m_bench->downloads().record(1)->id());
    }
    m_bench->site.release();
    TRY(isAt(last, Kind::done));
    QCOMPARE(m_bench->site.requestCount(QStringLiteral("/sources")), 0);
    QCOMPARE(m_bench->downloads().doneCount(), 2);
}

void TestCoordinatorRuns::whatWaitsEndsWithoutEffectWhenTheCoordinatorIsGone()
{
    const Record running = m_bench->queue(QStringLiteral("/held"));
    const Record waiting = m_bench->queue(QStringLiteral("/plain"));
    const std::shared_ptr<Completion> end = m_bench->store().inFlightTask();
    TRY(isDownloading(running));
    m_bench->close();
    m_bench->site.release();
    TRY(end->isFinished());
    QVERIFY(isAt(waiting, Kind::queued));
    QCOMPARE(m_bench->site.requestCount(QStringLiteral("/plain")), 0);
    QVERIFY(m_bench->savedFiles().isEmpty());
    QVERIFY(m_bench->savedTitles().isEmpty());
}

QTEST_GUILESS_MAIN(TestCoordinatorRuns)
#include "tst_coordinator_runs.moc"
