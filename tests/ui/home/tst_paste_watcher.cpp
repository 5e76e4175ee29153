// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/coordination/fake_desktop.h"
#include "ui/home/paste_watcher.h"

#include <QSignalSpy>
#include <QTest>

using namespace Qt::StringLiterals;

namespace veltro {

using Delivery = MacPasteWatcher::Delivery;

class TestPasteWatcher : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void init()
    {
        m_pasteboard.held.reset();
        m_watcher = std::make_unique<MacPasteWatcher>(m_pasteboard, Delivery::atOnce);
    }

    void onlyAWebLinkIsOffered()
    {
        QCOMPARE(offeredAfter(m_one), QUrl(m_one));
        QCOMPARE(offeredAfter(u"example.org/a"_s), QUrl());
        QCOMPARE(offeredAfter(u" \n https://example.org/b\r\n"_s), QUrl(m_other));
        QCOMPARE(offeredAfter(u"ftp://example.org/a"_s), QUrl());
        QCOMPARE(offeredAfter(u"see https://example.org/a"_s), QUrl());
        QCOMPARE(offeredAfter(QString()), QUrl());
    }

    void aDismissedLinkIsNeverOfferedAgain()
    {
        QCOMPARE(offeredAfter(m_one), QUrl(m_one));
        m_watcher->dismiss();
        QVERIFY(!m_watcher->candidate());
        QCOMPARE(offeredAfter(m_one), QUrl());
        QCOMPARE(offeredAfter(m_other), QUrl(m_other));
        QCOMPARE(offeredAfter(u' ' + m_one), QUrl());
    }

    void copyingSomethingElseWithdrawsTheOfferAtTheNextCheck()
    {
        const QSignalSpy changes(m_watcher.get(), &MacPasteWatcher::candidateChanged);
        QCOMPARE(offeredAfter(m_one), QUrl(m_one));
        QCOMPARE(offeredAfter(m_one), QUrl(m_one));
        QCOMPARE(changes.count(), 1);
        m_pasteboard.held.reset();
        QVERIFY(m_watcher->candidate());
        QCOMPARE(offeredAfter({}), QUrl());
        QCOMPARE(changes.count(), 2);
    }

    void nothingIsReadWhenACopyIsAnnounced()
    {
        QCOMPARE(offeredAfter({}), QUrl());
        m_pasteboard.held = m_one;
        Q_EMIT m_pasteboard.changed();
        QVERIFY(!m_watcher->candidate());
    }

    void theFirstDeliveryAfterACheckCompletesIt()
    {
        m_watcher = std::make_unique<MacPasteWatcher>(m_pasteboard, Delivery::afterActivation);
        QCOMPARE(offeredAfter({}), QUrl());
        for (const QString &copied : {m_one, m_other}) {
            m_pasteboard.held = copied;
            Q_EMIT m_pasteboard.changed();
            QCOMPARE(m_watcher->candidate(), QUrl(m_one));
        }
    }

private:
    /// What is offered once that was copied and looked for.
    [[nodiscard]] QUrl offeredAfter(const std::optional<QString> &copied)
    {
        m_pasteboard.held = copied;
        m_watcher->check();
        return m_watcher->candidate().value_or(QUrl());
    }

    const QString m_one = u"https://example.org/a"_s;
    const QString m_other = u"https://example.org/b"_s;
    FakePasteboard m_pasteboard;
    std::unique_ptr<MacPasteWatcher> m_watcher;
};

}

QTEST_GUILESS_MAIN(veltro::TestPasteWatcher)
#include "tst_paste_watcher.moc"
