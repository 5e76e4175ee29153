// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
// What becomes of a link before it is in the queue, with the real engine on the test site.
#include "tests/coordination/coordinator_bench.h"
#include "tests/engine/service/broken_engine.h"
#include "tests/rows.h"

#include <QElapsedTimer>
#include <QSignalSpy>
#include <QTest>

using namespace veltro;
using test::row;

using Record = MacAppStore::Record;

class TestCoordinatorLinks : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void init();
    void cleanup();
    void anEngineThatCannotStartIsToldAndMayStartLater();
    void aSubmittedLinkAsksForAFormat();
    void aPageThatCannotBeProbedAlertsAndQueuesNothing_data();
    void aPageThatCannotBeProbedAlertsAndQueuesNothing();
    void onlyAPastedWebAddressIsSubmitted();
    void aRequestOfTheSystemSubmitsItsInnerLink();
    void aTierIsQueuedUnderItsSelector_data();
    void aTierIsQueuedUnderItsSelector();
    void aPickedPictureIsPairedWithSound();
    void aBatchQueuesItsLinksWithAPauseBetween();
    void theCookieFileOfTheHostIsUsed();
    void cookiesThatCannotBeLookedUpStopALinkButNoRun();
    void aLinkThatIsProbedOutlivesTheCoordinator();

private:
    std::unique_ptr<CoordinatorBench> m_bench;
};

#define TRY(condition) QTRY_VERIFY_WITH_TIMEOUT(condition, CoordinatorBench::patience)

void TestCoordinatorLinks::init()
{
    m_bench = std::make_unique<CoordinatorBench>();
}

void TestCoordinatorLinks::cleanup()
{
    m_bench->site.release();
    m_bench->close();
    TRY(!m_bench->engine.hasRuns());
}

void TestCoordinatorLinks::anEngineThatCannotStartIsToldAndMayStartLater()
{
    std::optional<BrokenEngine> broken(std::in_place);
    m_bench->store().beginEngine();
    TRY(m_bench->store().showEngineError());
    const QString text = m_bench->store().engineErrorText();
    QVERIFY2(text.startsWith(QStringLiteral("Could not start the engine: ")), qPrintable(text));
    QVERIFY2(text.endsWith(QStringLiteral("names have moved")), qPrintable(text));
    QVERIFY(!m_bench->store().engineReady());

    broken.reset();
    const QSignalSpy ready(&m_bench->store(), &MacAppStore::engineReadyChanged);
    m_bench->store().beginEngine();
    m_bench->store().beginEngine();
    TRY(m_bench->store().engineReady());
    QCoreApplication::processEvents();
    QCOMPARE(ready.count(), 1);
}

void TestCoordinatorLinks::aSubmittedLinkAsksForAFormat()
{
    const QUrl page = m_bench->site.url(QStringLiteral("/jsonld"));
    m_bench->store().beginLink(page);
    TRY(m_bench->store().hasPendingFormatPick());
    const FormatPickRequest request = *m_bench->store().pendingFormatPick();
    QVERIFY(!request.id.isNull());
    QCOMPARE(request.url, page);
    QVERIFY(!request.info.title.isEmpty());
    QCOMPARE(m_bench->downloads().count(), 0);
}

void TestCoordinatorLinks::aPageThatCannotBeProbedAlertsAndQueuesNothing_data()
{
    QTest::addColumn<QString>("page");
    QTest::addColumn<QString>("words");
    row("not there", "/status/404", "404");
    row("no media", "/no-media", "subscription");
    row("protected", "/drm/hls", "DRM");
}

void TestCoordinatorLinks::aPageThatCannotBeProbedAlertsAndQueuesNothing()
{
    QFETCH(QString, page);
    QFETCH(QString, words);
    const auto alerts = [this, &words] {
        return m_bench->store().showEngineError() &&
               m_bench->store().engineErrorText().contains(words);
    };
    m_bench->store().beginLink(m_bench->site.url(page));
    TRY(alerts());
    m_bench->store().setShowEngineError(false);
    m_bench->store().setEngineError(std::nullopt);
    m_bench->store().beginDownload(m_bench->site.url(page), QStringLiteral("best"));
    TRY(alerts());
    QVERIFY(!m_bench->store().hasPendingFormatPick());
    QCOMPARE(m_bench->downloads().count(), 0);
}

void TestCoordinatorLinks::onlyAPastedWebAddressIsSubmitted()
{
    m_bench->store().beginPaste();
    for (const QString &text :
         {QString(), QStringLiteral("words"), QStringLiteral("file:///etc")}) {
        m_bench->pasteboard.held = text;
        m_bench->store().beginPaste();
    }
    m_bench->pasteboard.held =
        QStringLiteral(" \n") + m_bench->site.url(QStringLiteral("/plain")).toString() + u'\n';
    m_bench->store().beginPaste();
    TRY(m_bench->store().hasPendingFormatPick());
    QVERIFY(!m_bench->store().showEngineError());
    QCOMPARE(m_bench->site.requestCount(QStringLiteral("/plain")), 1);
}

void TestCoordinatorLinks::aRequestOfTheSystemSubmitsItsInnerLink()
{
    m_bench->store().handleOpenURL(QUrl(QStringLiteral("veltro://save?link=x")));
    const QUrl page = m_bench->site.url(QStringLiteral("/plain"));
    QUrl request(QStringLiteral("veltro://save"));
    request.setQuery(QStringLiteral("url=") +
                     QString::fromLatin1(QUrl::toPercentEncoding(page.toString())));
    m_bench->store().handleOpenURL(request);
    TRY(m_bench->store().hasPendingFormatPick());
    QCOMPARE(m_bench->store().pendingFormatPick()->url, page);

    m_bench->store().handleOpenURL(QUrl(QStringLiteral("veltro://save?url=nonsense://page")));
    TRY(m_bench->store().showEngineError()); // refused by the engine, in its words
}

void TestCoordinatorLinks::aTierIsQueuedUnderItsSelector_data()
{
    QTest::addColumn<QString>("selector");
    QTest::addColumn<bool>("isAudioOnly");
    row("sound", "bestaudio[ext=m4a]/bestaudio", true);
    row("picture", "bestvideo[height<=720]+bestaudio/best[height<=720]", false);
    row("best", "best", false);
}

void TestCoordinatorLinks::aTierIsQueuedUnderItsSelector()
{
    QFETCH(QString, selector);
    QFETCH(bool, isAudioOnly);
    m_bench->store().beginDownload(m_bench->site.url(QStringLiteral("/plain")), selector);
    TRY(m_bench->downloads().count() == 1);
    const Record record = m_bench->downloads().record(0);
    Format format;
    format.id = selector;
    format.ext = QStringLiteral("mp4");
    format.isAudioOnly = isAudioOnly;
    QCOMPARE(record->formatID(), selector);
    QCOMPARE(record->formatLabel(), format.label());
    m_bench->store().cancel(record->id());
}

void TestCoordinatorLinks::aPickedPictureIsPairedWithSound()
{
    Format format;
    format.id = QStringLiteral("137");
    format.isVideoOnly = true;
    m_bench->store().beginFormatPick(m_bench->site.url(QStringLiteral("/plain")), format);
    const Record record = m_bench->downloads().record(0);
    QCOMPARE(record->formatID(),
             QStringLiteral("137+bestaudio[acodec^=mp4a]/137+bestaudio/137/best[ext=mp4]/best"));
    m_bench->store().cancel(record->id());
}

void TestCoordinatorLinks::aBatchQueuesItsLinksWithAPauseBetween()
{
    Preferences preferences;
    preferences.defaultFormatID = QStringLiteral("best[height<=480]");
    m_bench->store().setPreferences(preferences);
    QElapsedTimer clock;
    QList<qint64> times;
    connect(&m_bench->downloads(), &QAbstractItemModel::rowsInserted, this,
            [&] { times.append(clock.elapsed()); });
    const QString page = m_bench->site.url(QStringLiteral("/plain")).toString();
    const QString held = m_bench->site.url(QStringLiteral("/held")).toString();
    clock.start();
    m_bench->store().submitBatch(
        QStringLiteral("\n  %1 words\n\nftp://x.example %2\t%2 ").arg(held, page));
    QCOMPARE(m_bench->downloads().count(), 1);
    TRY(m_bench->downloads().count() == 3);
    QCOMPARE(m_bench->downloads().record(0)->url(), QUrl(held));
    QCOMPARE(m_bench->downloads().record(1)->url(), QUrl(page));
    QCOMPARE(m_bench->downloads().record(2)->url(), QUrl(page));
    QCOMPARE(m_bench->downloads().record(2)->formatID(), preferences.defaultFormatID);
    constexpr qint64 pause = 79; // ms: 80, and a clock that is read in whole ones
    QVERIFY(times.at(1) - times.at(0) >= pause);
    QVERIFY(times.at(2) - times.at(1) >= pause);
    for (int row = 2; row >= 0; --row) {
        m_bench->store().cancel(m_bench->downloads().record(row)->id());
    }
}

void TestCoordinatorLinks::theCookieFileOfTheHostIsUsed()
{
    const QUrl page = m_bench->site.url(QStringLiteral("/cookies"));
    m_bench->store().beginLink(page);
    TRY(m_bench->store().showEngineError());
    m_bench->store().setShowEngineError(false);

    const QString folder = CoordinatorBench::cookieFolder();
    QVERIFY(QDir().mkpath(folder));
    QVERIFY(QFile::copy(TestSite::cookieFile(QStringLiteral("session")),
                        folder + u'/' + page.host() + QStringLiteral(".cookies.txt")));
    m_bench->store().beginLink(page);
    TRY(m_bench->store().hasPendingFormatPick());
    const Record record = m_bench->queue(QStringLiteral("/cookies"));
    TRY(m_bench->store().inFlightTask()->isFinished());
    QVERIFY2(record->state().kind == ItemState::Kind::done, qPrintable(record->state().text));
}

void TestCoordinatorLinks::cookiesThatCannotBeLookedUpStopALinkButNoRun()
{
    QFile blocking(CoordinatorBench::cookieFolder()); // a file where a folder is wanted
    QVERIFY(blocking.open(QFile::WriteOnly));
    const QUrl page = m_bench->site.url(QStringLiteral("/plain"));
    m_bench->store().beginLink(page);
    QVERIFY(m_bench->store().showEngineError());
    QVERIFY(!m_bench->store().engineErrorText().isEmpty());
    m_bench->store().setShowEngineError(false);
    m_bench->store().beginDownload(page, QStringLiteral("best"));
    QVERIFY(m_bench->store().showEngineError());
    m_bench->store().setShowEngineError(false);
    QCOMPARE(m_bench->downloads().count(), 0);
    QCOMPARE(m_bench->site.requestCount(QStringLiteral("/plain")), 0);

    m_bench->site.addRule(QStringLiteral("match=/media/&status=500&times=1"));
    const Record failed = m_bench->queue(QStringLiteral("/sources"));
    TRY(m_bench->store().inFlightTask()->isFinished());
    QVERIFY(failed->state().kind == ItemState::Kind::failed ||
            failed->state().kind == ItemState::Kind::done);
    m_bench->store().beginRetry(failed->id());
    TRY(!m_bench->downloads().contains(failed->id()));
    TRY(m_bench->store().inFlightTask()->isFinished());
    QCOMPARE(m_bench->downloads().doneCount(), 1);
    QVERIFY(!m_bench->store().showEngineError());
}

void TestCoordinatorLinks::aLinkThatIsProbedOutlivesTheCoordinator()
{
    m_bench->site.addRule(QStringLiteral("match=/plain&hold=0"));
    m_bench->store().beginLink(m_bench->site.url(QStringLiteral("/plain")));
    TRY(m_bench->site.requestCount(QStringLiteral("/plain")) > 0);
    m_bench->renew();
    m_bench->site.release();
    // A later probe ends after the one before it: both have been handed over by then.
    m_bench->store().beginLink(m_bench->site.url(QStringLiteral("/sources")));
    TRY(m_bench->store().hasPendingFormatPick());
    QCOMPARE(m_bench->store().pendingFormatPick()->url,
             m_bench->site.url(QStringLiteral("/sources")));
}

QTEST_GUILESS_MAIN(TestCoordinatorLinks)
#include "tst_coordinator_links.moc"
