// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
// The home screen's decisions, with the real engine on the test site.
#include "tests/coordination/coordinator_bench.h"
#include "ui/home/home_model.h"

#include <QSignalSpy>
#include <QTest>

namespace veltro {

class TestHomeModel : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void init()
    {
        m_bench = std::make_unique<CoordinatorBench>();
        m_home = std::make_unique<HomeModel>(m_bench->store(), m_bench->pasteboard,
                                             MacPasteWatcher::Delivery::atOnce);
    }
    void cleanup()
    {
        m_bench->site.release();
        QTRY_VERIFY_WITH_TIMEOUT(!m_home->working(), CoordinatorBench::patience);
        m_home.reset();
        m_bench->close();
        QTRY_VERIFY_WITH_TIMEOUT(!m_bench->engine.hasRuns(), CoordinatorBench::patience);
    }

    void whatIsNoWebAddressStaysInTheField_data()
    {
        QTest::addColumn<QString>("typed");
        QTest::newRow("nothing") << QString();
        QTest::newRow("no scheme") << QStringLiteral("example.org/video");
        QTest::newRow("another scheme") << QStringLiteral("ftp://example.org/video");
        QTest::newRow("words") << QStringLiteral("a video that I saw");
    }
    void whatIsNoWebAddressStaysInTheField()
    {
        QFETCH(QString, typed);
        m_home->setUrlText(typed);
        m_home->submit();
        QVERIFY(!m_home->working());
        QCOMPARE(m_home->urlText(), typed);
        QVERIFY(!m_bench->store().showEngineError());
    }

    void aSubmissionGoesOnceAndEndsWithTheFieldEmpty()
    {
        const QString page = m_bench->site.url(QStringLiteral("/plain")).toString();
        m_home->setSelectedTier(int(QualityTier::p480));
        m_home->setUrlText(QStringLiteral("  %1\n").arg(page));
        m_home->submit();
        QVERIFY(m_home->working());
        m_home->submit();
        m_home->pasteAndSave();
        QTRY_COMPARE_WITH_TIMEOUT(m_bench->downloads().count(), 1, CoordinatorBench::patience);
        QCOMPARE(m_bench->downloads().record(0)->formatID(), selector(QualityTier::p480));
        QTRY_VERIFY_WITH_TIMEOUT(!m_home->working(), CoordinatorBench::patience);
        QTRY_VERIFY_WITH_TIMEOUT(m_home->urlText().isEmpty(), CoordinatorBench::patience);
        QVERIFY(m_home->startedConfirm());
        QTRY_COMPARE_WITH_TIMEOUT(m_bench->savedFiles().size(), 1, CoordinatorBench::patience);
        QCOMPARE(m_bench->downloads().count(), 1);
        QTRY_VERIFY(!m_home->startedConfirm());
    }

    void aFailedProbeEndsTheWorkAndKeepsTheText()
    {
        const QString page = m_bench->site.deadUrl(QStringLiteral("/plain")).toString();
        m_home->setUrlText(page);
        m_home->submit();
        QVERIFY(m_home->working());
        QTRY_VERIFY_WITH_TIMEOUT(!m_home->working(), CoordinatorBench::patience);
        QVERIFY(m_bench->store().showEngineError());
        QCOMPARE(m_home->urlText(), page);
    }

    void theVerbStepsWhileWorking()
    {
        QSignalSpy steps(m_home.get(), &HomeModel::workingVerbChanged);
        QCOMPARE(m_home->workingVerb(), QStringLiteral("Reading…"));
        m_home->setUrlText(m_bench->site.url(QStringLiteral("/never?seconds=8")).toString());
        m_home->submit();
        QVERIFY(steps.wait(6'000));
        QVERIFY(m_home->working());
        QCOMPARE(m_home->workingVerb(), QStringLiteral("Sniffing…"));
    }

    void pastingFillsTheFieldAndSubmits()
    {
        m_bench->pasteboard.held = QStringLiteral(" no link ");
        m_home->pasteAndSave();
        QCOMPARE(m_home->urlText(), QStringLiteral("no link"));
        QVERIFY(!m_home->working());
        m_bench->pasteboard.held.reset();
        m_home->pasteAndSave();
        QCOMPARE(m_home->urlText(), QStringLiteral("no link"));
        m_bench->pasteboard.held = m_bench->site.deadUrl(QStringLiteral("/a")).toString();
        m_home->pasteAndSave();
        QVERIFY(m_home->working());
    }

    void eachAppearanceTakesTheTierFromThePreferencesAndLooksAtThePasteboard()
    {
        m_home->setSelectedTier(int(QualityTier::k4));
        m_home->appear();
        QCOMPARE(m_home->selectedTier(), int(QualityTier::p1080)); // "best" has no tier of its own
        Preferences preferences = m_bench->store().preferences();
        preferences.defaultFormatID = selector(QualityTier::audio);
        m_bench->store().setPreferences(preferences);
        m_bench->pasteboard.held = QStringLiteral("https://video.example/watch");
        QVERIFY(!m_home->hasCopiedLink());
        m_home->appear();
        QCOMPARE(m_home->selectedTier(), int(QualityTier::audio));
        QCOMPARE(m_home->copiedLinkText(), QStringLiteral("video.example"));
    }

    void aCopiedLinkIsLookedForWhenTheProgramBecomesActiveOnHomeAlone()
    {
        m_bench->pasteboard.held = m_bench->site.deadUrl(QStringLiteral("/copied")).toString();
        m_bench->store().setSelectedTab(MacTab::library);
        m_home->becomeActive();
        QVERIFY(!m_home->hasCopiedLink());
        m_bench->store().setSelectedTab(MacTab::home);
        m_home->becomeActive();
        QVERIFY(m_home->hasCopiedLink());
        m_home->useCopiedLink();
        QVERIFY(!m_home->hasCopiedLink());
        QVERIFY(m_home->working());
        QCOMPARE(m_home->urlText(), *m_bench->pasteboard.held);
        m_home->becomeActive();
        QVERIFY(!m_home->hasCopiedLink());
    }

    void onlyAToastThatWasAbsentEmptiesTheField()
    {
        MacAppStore &store = m_bench->store();
        store.setStartedToast(QStringLiteral("first"));
        m_home->setUrlText(QStringLiteral("typed meanwhile"));
        store.setStartedToast(QStringLiteral("second"));
        QCOMPARE(m_home->urlText(), QStringLiteral("typed meanwhile"));
        store.clearStartedToast();
        QCOMPARE(m_home->urlText(), QStringLiteral("typed meanwhile"));
        store.setStartedToast(QStringLiteral("third"));
        QVERIFY(m_home->urlText().isEmpty());
        QVERIFY(m_home->startedConfirm());
    }

private:
    std::unique_ptr<CoordinatorBench> m_bench;
    std::unique_ptr<HomeModel> m_home;
};

}

QTEST_GUILESS_MAIN(veltro::TestHomeModel)
#include "tst_home_model.moc"
