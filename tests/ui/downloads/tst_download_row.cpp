// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/downloads/download_row.h"

#include <QSignalSpy>
#include <QTest>

#include <limits>
#include <memory>

using namespace veltro;

namespace {

using Kind = ItemState::Kind;

constexpr double infinite = std::numeric_limits<double>::infinity();

std::unique_ptr<DownloadProgressState> makeRecord(const QString &url)
{
    return std::make_unique<DownloadProgressState>(DownloadOrder{
        QUuid::createUuid(), QUrl(url), QStringLiteral("137"), QStringLiteral("1080p • mp4")});
}

std::unique_ptr<DownloadProgressState> makeRecord()
{
    return makeRecord(QStringLiteral("https://video.example/watch?v=1"));
}

QStringList shownParts(const DownloadRow &row)
{
    QStringList parts;
    for (const QString &part : {row.position(), row.total(), row.speed(), row.timeLeft()}) {
        if (!part.isEmpty()) {
            parts << part;
        }
    }
    return parts;
}

}

class TestDownloadRow : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void eachStateHasItsNameColourAndActions_data();
    void eachStateHasItsNameColourAndActions();
    void theDetailLineFollowsWhatIsKnown_data();
    void theDetailLineFollowsWhatIsKnown();
    void theTimeLeftIsShownOnlyBeforeTheProcessing();
    void theBarNeverLeavesItsTrack();
    void aPageWithoutAHostShowsItsWholeAddress();
    void aTitleStaysOnOneLine();
    void aScreenReaderHearsTheStageAndTheReason();
    void anExchangedRecordIsForgotten();
    void aRowOutlivesItsRecord();
};

void TestDownloadRow::eachStateHasItsNameColourAndActions_data()
{
    QTest::addColumn<ItemState>("state");
    QTest::addColumn<QString>("label");
    QTest::addColumn<DownloadRow::Tint>("tint");
    QTest::addColumn<QString>("actions");
    const auto row = [](const char *name, const ItemState &state, const char *label,
                        DownloadRow::Tint tint, const char *actions) {
        QTest::newRow(name) << state << QString::fromLatin1(label) << tint
                            << QString::fromLatin1(actions);
    };
    row("queued", {Kind::queued, {}}, "Queued", DownloadRow::Neutral, "cancel");
    row("running", {Kind::running, {}}, "Downloading", DownloadRow::Accent, "cancel");
    row("processing", ItemState::postProcessing(QStringLiteral("Merger")), "Processing",
        DownloadRow::Warning, "cancel");
    row("done", {Kind::done, {}}, "Done", DownloadRow::Success, "play");
    row("failed", ItemState::failed(QStringLiteral("no")), "Failed", DownloadRow::Danger, "retry");
    row("cancelled", {Kind::cancelled, {}}, "Cancelled", DownloadRow::Neutral, "");
}

void TestDownloadRow::eachStateHasItsNameColourAndActions()
{
    QFETCH(ItemState, state);
    const auto record = makeRecord();
    DownloadRow row;
    row.setRecord(record.get());
    record->setLocalFileURL(QUrl(QStringLiteral("file:///tmp/a.mp4")));
    record->setState(state);
    QTEST(row.status(), "label");
    QTEST(row.statusTint(), "tint");
    QStringList actions;
    if (row.canPlay()) {
        actions << QStringLiteral("play");
    }
    if (row.canCancel()) {
        actions << QStringLiteral("cancel");
    }
    if (row.canRetry()) {
        actions << QStringLiteral("retry");
    }
    QTEST(actions.join(u','), "actions");
    record->setLocalFileURL(std::nullopt);
    QVERIFY(!row.canPlay());
}

void TestDownloadRow::theDetailLineFollowsWhatIsKnown_data()
{
    QTest::addColumn<DownloadProgressed>("progress");
    QTest::addColumn<QStringList>("parts");
    const auto row = [](const char *why, const DownloadProgressed &progress, const char *parts) {
        QTest::newRow(why) << progress << QString::fromLatin1(parts).split(u'|');
    };
    row("nothing yet", {}, "Zero KB");
    row("bytes without a total", {1'500'000, {}, {}, {}, {}, {}}, "1.5 MB");
    row("bytes with a total", {1'500'000, 3'000'000, {}, {}, {}, {}}, "1.5 MB|of 3 MB");
    row("a total of nothing is a total", {0, 0, {}, {}, {}, {}}, "Zero KB|of Zero KB");
    row("segments instead of bytes", {1'500'000, 3'000'000, {}, {}, 3, 12}, "Segment 3/12");
    row("a segment before the first", {0, {}, {}, {}, 0, 1}, "Segment 0/1");
    row("no segments at all", {2000, {}, {}, {}, 0, 0}, "2 KB");
    row("an index without a count", {2000, {}, {}, {}, 4, {}}, "2 KB");
    row("a speed and a time, cut", {2000, {}, 1'999'999.9, 42.7, {}, {}}, "2 KB|2 MB/s|~42s");
    row("a speed below one", {2000, {}, 0.9, {}, {}, {}}, "2 KB|Zero KB/s");
    row("neither a number", {2000, {}, std::nan(""), infinite, {}, {}}, "2 KB");
    row("negative infinity", {2000, {}, -infinite, -infinite, {}, {}}, "2 KB");
    row("too large for 64 bits", {2000, {}, 9223372036854775808.0, 1e300, {}, {}}, "2 KB");
    row("the smallest that fits", {2000, {}, {}, -9223372036854775808.0, {}, {}},
        "2 KB|~-9223372036854775808s");
}

void TestDownloadRow::theDetailLineFollowsWhatIsKnown()
{
    QFETCH(DownloadProgressed, progress);
    const auto record = makeRecord();
    DownloadRow row;
    row.setRecord(record.get());
    record->setState({Kind::running, {}});
    record->apply(progress);
    QTEST(shownParts(row), "parts");
}

void TestDownloadRow::theTimeLeftIsShownOnlyBeforeTheProcessing()
{
    const auto record = makeRecord();
    DownloadRow row;
    row.setRecord(record.get());
    record->setEtaSeconds(42.7);
    QCOMPARE(row.timeLeft(), QStringLiteral("~42s"));
    record->setState({Kind::running, {}});
    QCOMPARE(row.timeLeft(), QStringLiteral("~42s"));
    for (const Kind kind : {Kind::postProcessing, Kind::done, Kind::failed, Kind::cancelled}) {
        record->setState({kind, {}});
        QCOMPARE(row.timeLeft(), QString());
    }
}

void TestDownloadRow::theBarNeverLeavesItsTrack()
{
    const auto record = makeRecord();
    DownloadRow row;
    row.setRecord(record.get());
    QVERIFY(!row.hasFraction());
    record->apply(DownloadProgressed{500, 1000, {}, {}, {}, {}});
    QCOMPARE(row.fraction(), 0.5);
    record->apply(DownloadProgressed{1500, 1000, {}, {}, {}, {}});
    QCOMPARE(row.fraction(), 1.0);
    record->apply(DownloadProgressed{1500, 1000, {}, {}, 3, 12});
    QCOMPARE(row.fraction(), 0.25);
    record->apply(DownloadProgressed{0, 1000, {}, {}, -3, 12});
    QCOMPARE(row.fraction(), 0.0);
    QSignalSpy changed(&row, &DownloadRow::fractionChanged);
    record->apply(DownloadProgressed{1500, {}, {}, {}, {}, {}});
    QVERIFY(!row.hasFraction());
    QVERIFY(!changed.isEmpty());
}

void TestDownloadRow::aPageWithoutAHostShowsItsWholeAddress()
{
    DownloadRow row;
    const auto page = makeRecord(QStringLiteral("https://Video.Example:8080/a"));
    row.setRecord(page.get());
    QCOMPARE(row.host(), QStringLiteral("video.example"));
    QVERIFY(row.isWebPage());
    const auto file = makeRecord(QStringLiteral("file:///tmp/a%20b.html"));
    row.setRecord(file.get());
    QCOMPARE(row.host(), QStringLiteral("file:///tmp/a b.html"));
    QVERIFY(!row.isWebPage());
}

void TestDownloadRow::aTitleStaysOnOneLine()
{
    const auto record = makeRecord();
    DownloadRow row;
    row.setRecord(record.get());
    record->setTitle(QStringLiteral("one\r\ntwo\tthree\u2028four\u0007<b>five</b>"));
    QCOMPARE(row.title(), QStringLiteral("one  two three four <b>five</b>"));
}

void TestDownloadRow::aScreenReaderHearsTheStageAndTheReason()
{
    const auto record = makeRecord();
    DownloadRow row;
    row.setRecord(record.get());
    record->apply(DownloadProgressed{1'500'000, 3'000'000, 2000.0, 42.7, {}, {}});
    QCOMPARE(row.description(),
             QStringLiteral("Queued, 1.5 MB of 3 MB, 2 KB/s, ~42s, video.example"));
    QSignalSpy changed(&row, &DownloadRow::descriptionChanged);
    record->apply(DownloadPostProcessing{QStringLiteral("Merger")});
    QCOMPARE(row.stage(), QStringLiteral("Merger"));
    QVERIFY(row.description().startsWith(QStringLiteral("Processing, Merger, ")));
    QVERIFY(!changed.isEmpty());
    record->setState(ItemState::failed(QStringLiteral("HTTP Error 404: Not Found")));
    QCOMPARE(row.stage(), QString());
    QCOMPARE(row.failure(), QStringLiteral("HTTP Error 404: Not Found"));
    QVERIFY(row.description().startsWith(QStringLiteral("Failed, HTTP Error 404: Not Found, ")));
}

void TestDownloadRow::anExchangedRecordIsForgotten()
{
    const auto first = makeRecord();
    const auto second = makeRecord();
    second->setTitle(QStringLiteral("second"));
    second->setState({Kind::done, {}});
    DownloadRow row;
    row.setRecord(first.get());
    QSignalSpy titleChanged(&row, &DownloadRow::titleChanged);
    QSignalSpy stateChanged(&row, &DownloadRow::stateChanged);
    row.setRecord(second.get());
    QCOMPARE(row.title(), QStringLiteral("second"));
    QCOMPARE(row.status(), QStringLiteral("Done"));
    QCOMPARE(titleChanged.size(), 1);
    const auto before = stateChanged.size();
    first->setTitle(QStringLiteral("first"));
    first->setState({Kind::running, {}});
    QCOMPARE(titleChanged.size(), 1);
    QCOMPARE(stateChanged.size(), before);
}

void TestDownloadRow::aRowOutlivesItsRecord()
{
    auto record = makeRecord();
    DownloadRow row;
    row.setRecord(record.get());
    record.reset();
    QCOMPARE(row.title(), QString());
    QCOMPARE(row.description(), QString());
    QVERIFY(!row.canCancel() && !row.canPlay() && !row.canRetry());
}

QTEST_GUILESS_MAIN(TestDownloadRow)
#include "tst_download_row.moc"
