// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
// The service as the program uses it: one process, one event loop, pages of the test site.
#include "engine/runtime/task_cancelled.h"
#include "engine/service/engine_error.h"
#include "engine/service/yt_dlp_service.h"
#include "tests/engine/service/broken_engine.h"
#include "tests/site/test_site.h"

#include <QCoro/QCoroTask>
#include <QTemporaryDir>
#include <QTest>

using namespace veltro;

namespace {

/// How a probe or a run ended: "" or the kind and text of its error.
struct Ending {
    QString error;
    std::optional<MediaInfo> info;
    std::vector<DownloadEvent> events;
    bool isOver = false;
};

QString errorText(const std::exception_ptr &error)
{
    try {
        std::rethrow_exception(error);
    } catch (const EngineError &failure) {
        return failure.kindName() + QStringLiteral(": ") + failure.message();
    } catch (const TaskCancelled &) {
        return QStringLiteral("cancelled");
    } catch (const std::exception &failure) {
        return QString::fromUtf8(failure.what());
    }
}

QCoro::Task<void> probeInto(std::shared_ptr<Ending> ending, YtDlpService *service, QUrl url)
{
    try {
        ending->info = co_await service->probe(url, std::nullopt);
    } catch (...) {
        ending->error = errorText(std::current_exception());
    }
    ending->isOver = true;
}

/// Reads a run's events; stops, dropping the stream, after the first one when told so.
QCoro::Task<void> followInto(std::shared_ptr<Ending> ending, EventStream<DownloadEvent> events,
                             bool dropsAfterProgress)
{
    EventStream<DownloadEvent> stream = std::move(events);
    try {
        while (std::optional<DownloadEvent> event = co_await stream.next()) {
            ending->events.push_back(*event);
            if (dropsAfterProgress && std::holds_alternative<DownloadProgressed>(*event)) {
                break;
            }
        }
    } catch (...) {
        ending->error = errorText(std::current_exception());
    }
    ending->isOver = true;
}

template <typename Event>
qsizetype countOf(const Ending &ending)
{
    return std::count_if(ending.events.begin(), ending.events.end(),
                         [](const auto &event) { return std::holds_alternative<Event>(event); });
}

}

class TestYtDlpService : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void initTestCase();
    void init();
    void cleanup();
    void aBootstrapThatFailsLeavesNothingBehindAndCanBeRetried();
    void bootstrapsAtOnceLeaveBothQueuesWorking();
    void aProbeGoesOnWhileADownloadRuns();
    void aRunThatNobodyReadsStops();
    void aRunCancelledWhileItExtractsStopsAtItsFirstReport();

private:
    static constexpr int patience = 30'000; // ms, for what takes a second

    std::shared_ptr<Ending> probe(const QString &page)
    {
        auto ending = std::make_shared<Ending>();
        probeInto(ending, m_service.get(), m_site->url(page));
        return ending;
    }
    DownloadRequest request(const QString &page) const
    {
        DownloadRequest request;
        request.id = QUuid::createUuid();
        request.url = m_site->url(page);
        request.formatID = QStringLiteral("best");
        request.outputTemplate = QStringLiteral("%(title)s [%(id)s].%(ext)s");
        request.downloadsDirectory = QUrl::fromLocalFile(m_folder->path());
        request.audioFormat = QStringLiteral("m4a");
        return request;
    }
    std::shared_ptr<Ending> download(const DownloadRequest &request, bool drops = false)
    {
        auto ending = std::make_shared<Ending>();
        followInto(ending, m_service->downloadEvents(request), drops);
        return ending;
    }

    std::unique_ptr<TestSite> m_site;
    std::unique_ptr<YtDlpService> m_service;
    std::unique_ptr<QTemporaryDir> m_folder;
};

void TestYtDlpService::initTestCase()
{
    m_site = std::make_unique<TestSite>();
}

void TestYtDlpService::init()
{
    m_site->reset();
    m_service = std::make_unique<YtDlpService>();
    m_folder = std::make_unique<QTemporaryDir>();
}

void TestYtDlpService::cleanup()
{
    m_site->release();
    QTRY_VERIFY_WITH_TIMEOUT(!m_service->hasRuns(), patience);
}

void TestYtDlpService::aBootstrapThatFailsLeavesNothingBehindAndCanBeRetried()
{
    std::optional<BrokenEngine> broken(std::in_place);
    const auto probed = probe(QStringLiteral("/plain"));
    const auto downloaded = download(request(QStringLiteral("/plain")));
    QTRY_VERIFY_WITH_TIMEOUT(probed->isOver && downloaded->isOver, patience);
    QCOMPARE(probed->error, QStringLiteral("bootstrapFailed: names have moved"));
    QCOMPARE(downloaded->error, QStringLiteral("bootstrapFailed: names have moved"));
    QVERIFY(!m_service->isBootstrapped());
    QVERIFY(!m_service->hasRuns());

    broken.reset();
    const auto again = probe(QStringLiteral("/plain"));
    QTRY_VERIFY_WITH_TIMEOUT(again->isOver, patience);
    QCOMPARE(again->error, QString());
    QVERIFY(m_service->isBootstrapped());
}

void TestYtDlpService::bootstrapsAtOnceLeaveBothQueuesWorking()
{
    const auto probed = probe(QStringLiteral("/plain")); // each begins with a bootstrap
    const auto other = probe(QStringLiteral("/sources"));
    const auto saved = download(request(QStringLiteral("/plain")));
    QTRY_VERIFY_WITH_TIMEOUT(probed->isOver && other->isOver && saved->isOver, patience);
    QCOMPARE(probed->error + other->error, QString());
    QCOMPARE(saved->error, QString());
    QCOMPARE(countOf<DownloadFinished>(*saved), 1);
}

void TestYtDlpService::aProbeGoesOnWhileADownloadRuns()
{
    const DownloadRequest held = request(QStringLiteral("/held"));
    const auto run = download(held);
    QTRY_VERIFY_WITH_TIMEOUT(countOf<DownloadProgressed>(*run) > 0, patience);
    const auto probed = probe(QStringLiteral("/jsonld"));
    QTRY_VERIFY_WITH_TIMEOUT(probed->isOver, patience);
    QVERIFY(probed->info);
    QVERIFY(!run->isOver);
    m_site->release();
    QTRY_VERIFY_WITH_TIMEOUT(run->isOver, patience);
    QCOMPARE(run->error, QString());
}

void TestYtDlpService::aRunThatNobodyReadsStops()
{
    const auto run = download(request(QStringLiteral("/held")), true);
    QTRY_VERIFY_WITH_TIMEOUT(run->isOver, patience);
    QCOMPARE(run->error, QString());
    m_site->release();
    QTRY_VERIFY_WITH_TIMEOUT(!m_service->hasRuns(), patience);
    const QStringList left = QDir(m_folder->path()).entryList(QDir::Files);
    QVERIFY2(left.filter(QStringLiteral(".part")).size() == left.size(),
             qPrintable(left.join(u' ')));
}

void TestYtDlpService::aRunCancelledWhileItExtractsStopsAtItsFirstReport()
{
    m_site->addRule(QStringLiteral("match=/plain&hold=0"));
    const DownloadRequest slow = request(QStringLiteral("/plain"));
    const auto run = download(slow);
    QTRY_VERIFY_WITH_TIMEOUT(m_site->requestCount(QStringLiteral("/plain")) > 0, patience);
    m_service->cancelDownload(slow.id);
    m_site->release();
    QTRY_VERIFY_WITH_TIMEOUT(run->isOver, patience);
    QCOMPARE(run->error, QStringLiteral("cancelled"));
    QCOMPARE(countOf<DownloadStarted>(*run), 1);
    QCOMPARE(countOf<DownloadFinished>(*run), 0);
}

QTEST_GUILESS_MAIN(TestYtDlpService)
#include "tst_yt_dlp_service.moc"
