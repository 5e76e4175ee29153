// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/downloads/download_row.h"

#include <QSignalSpy>
#include <QTest>

#include <limits>
#include <memory>

using namespace Qt::StringLiterals;
using namespace veltro;

namespace {

using Kind = ItemState::Kind;

constexpr double infinite = std::numeric_limits<double>::infinity();

std::unique_ptr<DownloadProgressState> makeRecord(const QString &url)
{
    return std::make_unique<DownloadProgressState>(
        DownloadOrder{QUuid::createUuid(), QUrl(url), u"137"_s, u"1080p • mp4"_s});
}

}

class TestDownloadRow : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void init()
    {
        m_record = makeRecord(u"https://video.example/watch?v=1"_s);
        m_row = std::make_unique<DownloadRow>();
        m_row->setRecord(m_record.get());
    }
    void theDetailLineFollowsWhatIsKnown_data();
    void theDetailLineFollowsWhatIsKnown();
    void theTimeLeftIsShownOnlyBeforeTheProcessing();
    void aPageWithoutAHostShowsItsWholeAddress();
    void aTitleStaysOnOneLine();
    void aScreenReaderHearsTheStageAndTheReason();
    void anExchangedRecordIsForgotten();
    void aRowOutlivesItsRecord();

private:
    std::unique_ptr<DownloadProgressState> m_record;
    std::unique_ptr<DownloadRow> m_row;
};

void TestDownloadRow::theDetailLineFollowsWhatIsKnown_data()
{
    QTest::addColumn<DownloadProgressed>("progress");
    QTest::addColumn<QString>("parts");
    const auto row = [](const char *why, const DownloadProgressed &progress, const char *parts) {
        QTest::newRow(why) << progress << QString::fromLatin1(parts);
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
    m_record->setState({Kind::running, {}});
    m_record->apply(progress);
    QStringList parts{m_row->position(), m_row->total(), m_row->speed(), m_row->timeLeft()};
    parts.removeAll(QString());
    QTEST(parts.join(u'|'), "parts");
}

void TestDownloadRow::theTimeLeftIsShownOnlyBeforeTheProcessing()
{
    m_record->setEtaSeconds(42.7);
    QCOMPARE(m_row->timeLeft(), u"~42s"_s);
    m_record->setState({Kind::running, {}});
    QCOMPARE(m_row->timeLeft(), u"~42s"_s);
    for (const Kind kind : {Kind::postProcessing, Kind::done, Kind::failed, Kind::cancelled}) {
        m_record->setState({kind, {}});
        QCOMPARE(m_row->timeLeft(), QString());
    }
}

void TestDownloadRow::aPageWithoutAHostShowsItsWholeAddress()
{
    m_record = makeRecord(u"https://Video.Example:8080/a"_s);
    m_row->setRecord(m_record.get());
    QCOMPARE(m_row->host(), u"video.example"_s);
    QVERIFY(m_row->isWebPage());
    m_record = makeRecord(u"file:///tmp/a%20b.html"_s);
    m_row->setRecord(m_record.get());
    QCOMPARE(m_row->host(), u"file:///tmp/a b.html"_s);
    QVERIFY(!m_row->isWebPage());
}

void TestDownloadRow::aTitleStaysOnOneLine()
{
    m_record->setTitle(u"one\r\ntwo\tthree\u2028four\u0007<b>five</b>"_s);
    QCOMPARE(m_row->title(), u"one  two three four <b>five</b>"_s);
}

void TestDownloadRow::aScreenReaderHearsTheStageAndTheReason()
{
    m_record->apply(DownloadProgressed{1'500'000, 3'000'000, 2000.0, 42.7, {}, {}});
    QCOMPARE(m_row->description(), u"Queued, 1.5 MB of 3 MB, 2 KB/s, ~42s, video.example"_s);
    QSignalSpy changed(m_row.get(), &DownloadRow::descriptionChanged);
    m_record->apply(DownloadPostProcessing{u"Merger"_s});
    QCOMPARE(m_row->stage(), u"Merger"_s);
    QVERIFY(m_row->description().startsWith(u"Processing, Merger, "_s));
    QVERIFY(!changed.isEmpty());
    m_record->setState(ItemState::failed(u"HTTP Error 404: Not Found"_s));
    QCOMPARE(m_row->stage(), QString());
    QCOMPARE(m_row->failure(), u"HTTP Error 404: Not Found"_s);
    QVERIFY(m_row->description().startsWith(u"Failed, HTTP Error 404: Not Found, "_s));
}

void TestDownloadRow::anExchangedRecordIsForgotten()
{
    const auto second = makeRecord(u"https://video.example/2"_s);
    second->setTitle(u"second"_s);
    second->setState({Kind::done, {}});
    const QSignalSpy titleChanged(m_row.get(), &DownloadRow::titleChanged);
    const QSignalSpy stateChanged(m_row.get(), &DownloadRow::stateChanged);
    m_row->setRecord(second.get());
    QCOMPARE(m_row->title(), u"second"_s);
    QCOMPARE(m_row->status(), u"Done"_s);
    QCOMPARE(titleChanged.size(), 1);
    const auto before = stateChanged.size();
    m_record->setTitle(u"first"_s);
    m_record->setState({Kind::running, {}});
    QCOMPARE(titleChanged.size(), 1);
    QCOMPARE(stateChanged.size(), before);
}

void TestDownloadRow::aRowOutlivesItsRecord()
{
    m_record.reset();
    QCOMPARE(m_row->title(), QString());
    QCOMPARE(m_row->description(), QString());
    QVERIFY(!m_row->canCancel() && !m_row->canPlay() && !m_row->canRetry());
}

QTEST_GUILESS_MAIN(TestDownloadRow)
#include "tst_download_row.moc"
