// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/coordination/fake_desktop.h"
#include "ui/home/paste_watcher.h"

#include <QSignalSpy>
#include <QTest>

namespace veltro {

using Delivery = MacPasteWatcher::Delivery;

class TestPasteWatcher : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void onlyAWebLinkIsOffered_data()
    {
        QTest::addColumn<QString>("copied");
        QTest::addColumn<QUrl>("offered");
        const QUrl page(QStringLiteral("https://example.org/a"));
        QTest::newRow("a link") << QStringLiteral("https://example.org/a") << page;
        QTest::newRow("blanks around it")
            << QStringLiteral(" \n https://example.org/a\r\n") << page;
        QTest::newRow("no scheme") << QStringLiteral("example.org/a") << QUrl();
        QTest::newRow("another scheme") << QStringLiteral("ftp://example.org/a") << QUrl();
        QTest::newRow("words") << QStringLiteral("see https://example.org/a") << QUrl();
        QTest::newRow("nothing") << QString() << QUrl();
    }
    void onlyAWebLinkIsOffered()
    {
        QFETCH(QString, copied);
        QFETCH(QUrl, offered);
        FakePasteboard pasteboard;
        MacPasteWatcher watcher(pasteboard, Delivery::atOnce);
        pasteboard.held = copied;
        watcher.check();
        QCOMPARE(watcher.candidate().value_or(QUrl()), offered);
    }

    void aDismissedLinkIsNeverOfferedAgain()
    {
        FakePasteboard pasteboard;
        MacPasteWatcher watcher(pasteboard, Delivery::atOnce);
        pasteboard.held = QStringLiteral("https://example.org/a");
        watcher.check();
        watcher.dismiss();
        QVERIFY(!watcher.candidate());
        watcher.check();
        QVERIFY(!watcher.candidate());
        pasteboard.held = QStringLiteral("https://example.org/b");
        watcher.check();
        QCOMPARE(watcher.candidate(), QUrl(QStringLiteral("https://example.org/b")));
        pasteboard.held = QStringLiteral(" https://example.org/a");
        watcher.check();
        QVERIFY(!watcher.candidate());
    }

    void copyingSomethingElseWithdrawsTheOfferAtTheNextCheck()
    {
        FakePasteboard pasteboard;
        MacPasteWatcher watcher(pasteboard, Delivery::atOnce);
        QSignalSpy changes(&watcher, &MacPasteWatcher::candidateChanged);
        pasteboard.held = QStringLiteral("https://example.org/a");
        watcher.check();
        watcher.check();
        QCOMPARE(changes.count(), 1);
        pasteboard.held.reset();
        QVERIFY(watcher.candidate());
        watcher.check();
        QVERIFY(!watcher.candidate());
        QCOMPARE(changes.count(), 2);
    }

    void nothingIsReadWhenACopyIsAnnounced()
    {
        FakePasteboard pasteboard;
        MacPasteWatcher watcher(pasteboard, Delivery::atOnce);
        watcher.check();
        pasteboard.held = QStringLiteral("https://example.org/a");
        Q_EMIT pasteboard.changed();
        QVERIFY(!watcher.candidate());
    }

    void theFirstDeliveryAfterACheckCompletesIt()
    {
        FakePasteboard pasteboard;
        MacPasteWatcher watcher(pasteboard, Delivery::afterActivation);
        watcher.check();
        QVERIFY(!watcher.candidate());
        pasteboard.held = QStringLiteral("https://example.org/a");
        Q_EMIT pasteboard.changed();
        QCOMPARE(watcher.candidate(), QUrl(*pasteboard.held));
        pasteboard.held = QStringLiteral("https://example.org/copied-here");
        Q_EMIT pasteboard.changed();
        QCOMPARE(watcher.candidate(), QUrl(QStringLiteral("https://example.org/a")));
    }
};

}

QTEST_GUILESS_MAIN(veltro::TestPasteWatcher)
#include "tst_paste_watcher.moc"
