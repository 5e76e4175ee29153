// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
// The home screen's decisions, with the real engine on the test site.
#include "tests/coordination/coordinator_bench.h"
#include "ui/home/home_model.h"

#include <QSignalSpy>
#include <QTest>

using namespace Qt::StringLiterals;

namespace veltro {

#define TRY(condition) QTRY_VERIFY_WITH_TIMEOUT(condition, CoordinatorBench::patience)

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
        TRY(!m_home->working());
        m_home.reset();
        m_bench->close();
        TRY(!m_bench->engine.hasRuns());
    }

    void aFailedProbeEndsTheWorkAndKeepsTheText()
    {
        const QString page = m_bench->site.deadUrl(u"/plain"_s).toString();
        m_home->setUrlText(page);
        m_home->submit();
        QVERIFY(m_home->working());
        TRY(!m_home->working());
        QVERIFY(m_bench->store().showEngineError());
        QCOMPARE(m_home->urlText(), page);
    }

    void theVerbStepsWhileWorking()
    {
        QSignalSpy steps(m_home.get(), &HomeModel::workingVerbChanged);
        QCOMPARE(m_home->workingVerb(), u"Reading…"_s);
        m_home->setUrlText(m_bench->site.url(u"/never?seconds=8"_s).toString());
        m_home->submit();
        QVERIFY(steps.wait(6'000));
        QVERIFY(m_home->working());
        QCOMPARE(m_home->workingVerb(), u"Sniffing…"_s);
    }

    void pastingFillsTheFieldAndSubmits()
    {
        m_bench->pasteboard.held = u" no link "_s;
        m_home->pasteAndSave();
        QCOMPARE(m_home->urlText(), u"no link"_s);
        QVERIFY(!m_home->working());
        QVERIFY(!m_bench->store().showEngineError());
        m_bench->pasteboard.held.reset();
        m_home->pasteAndSave();
        QCOMPARE(m_home->urlText(), u"no link"_s);
        m_bench->pasteboard.held = m_bench->site.deadUrl(u"/a"_s).toString();
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
        m_bench->pasteboard.held = u"https://video.example/watch"_s;
        QVERIFY(!m_home->hasCopiedLink());
        m_home->appear();
        QCOMPARE(m_home->selectedTier(), int(QualityTier::audio));
        QCOMPARE(m_home->copiedLinkText(), u"video.example"_s);
    }

    void aCopiedLinkIsLookedForWhenTheProgramBecomesActiveOnHomeAlone()
    {
        m_bench->pasteboard.held = m_bench->site.deadUrl(u"/copied"_s).toString();
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
        store.setStartedToast(u"first"_s);
        m_home->setUrlText(u"typed meanwhile"_s);
        store.setStartedToast(u"second"_s);
        QCOMPARE(m_home->urlText(), u"typed meanwhile"_s);
        store.clearStartedToast();
        QCOMPARE(m_home->urlText(), u"typed meanwhile"_s);
        store.setStartedToast(u"third"_s);
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
