// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "library/completion_notifier.h"
#include "platform/notices.h"
#include "tests/platform/notification_daemon.h"

#include <QCoro/QCoroTask>
#include <QTest>
#include <QUuid>

using namespace veltro;

namespace {

/// A permission that changes only by what the user answers.
class AskingCenter final : public NoticeCenter {
public:
    AuthorizationStatus status = AuthorizationStatus::notDetermined;
    bool answer = true;
    bool asksInVain = false; // the answer stays open, and the question fails
    int questions = 0;
    std::vector<Notice> posted;

    QCoro::Task<AuthorizationStatus> authorizationStatus() override { co_return status; }
    QCoro::Task<bool> requestAuthorization() override
    {
        ++questions;
        if (asksInVain) {
            throw NoticeError("nobody is there");
        }
        status = answer ? AuthorizationStatus::authorized : AuthorizationStatus::denied;
        co_return answer;
    }
    QCoro::Task<void> add(Notice notice) override
    {
        posted.push_back(std::move(notice));
        co_return;
    }
};

QCoro::Task<bool> isRefused(NoticeCenter &center)
{
    Notice notice;
    notice.title = QStringLiteral("Title");
    try {
        co_await center.add(notice);
    } catch (const NoticeError &) {
        co_return true;
    }
    co_return false;
}

struct Asking {
    Asking() : center(new AskingCenter), notifier(std::unique_ptr<NoticeCenter>(center)) {}
    void finish(const char *title) { QCoro::waitFor(notifier.notify(QLatin1String(title))); }
    AskingCenter *const center;
    CompletionNotifier notifier;
};

}

/// Against a real notification daemon, on a bus and a display of its own.
class TestNotices : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void initTestCase() { QVERIFY(m_daemon.prepare()); }
    void cleanup() { QVERIFY(m_daemon.stop()); }
    void withoutAServiceNoticesAreDeniedAndThrow();
    void aNoticeReachesTheScreenWithItsTextAsItIs_data();
    void aNoticeReachesTheScreenWithItsTextAsItIs();
    void theIdentifierDecidesWhatTakesAPlace();
    void aFinishedDownloadIsAnnouncedByItsTitle();
    void theUserIsAskedOnceAndTheAnswerHolds();
    void aQuestionThatFailsCountsAsARefusalForGood();

private:
    NotificationDaemon m_daemon;
};

void TestNotices::withoutAServiceNoticesAreDeniedAndThrow()
{
    DBusNoticeCenter center;
    QCOMPARE(QCoro::waitFor(center.authorizationStatus()), AuthorizationStatus::denied);
    QVERIFY(!QCoro::waitFor(center.requestAuthorization()));
    QVERIFY(QCoro::waitFor(isRefused(center)));
    // Nothing escapes the notifier: there is nobody to tell.
    CompletionNotifier notifier(std::make_unique<DBusNoticeCenter>());
    QCoro::waitFor(notifier.notify(QStringLiteral("A film")));
}

void TestNotices::aNoticeReachesTheScreenWithItsTextAsItIs_data()
{
    QTest::addColumn<QByteArray>("markup");
    QTest::addColumn<QString>("body");
    const QString title = QStringLiteral("A <b>bold</b> & \"brash\" film");
    QTest::newRow("a service that reads markup") << QByteArray("full") << title.toHtmlEscaped();
    QTest::newRow("a service that reads none") << QByteArray("no") << title;
}

void TestNotices::aNoticeReachesTheScreenWithItsTextAsItIs()
{
    QFETCH(const QByteArray, markup);
    QFETCH(const QString, body);
    QVERIFY(m_daemon.start(markup));
    DBusNoticeCenter center;
    QCOMPARE(QCoro::waitFor(center.authorizationStatus()), AuthorizationStatus::authorized);
    Notice notice;
    notice.identifier = QStringLiteral("1");
    notice.title = QStringLiteral("Title");
    notice.body = QStringLiteral("A <b>bold</b> & \"brash\" film");
    QCoro::waitFor(center.add(notice));
    QCOMPARE(m_daemon.takeShown(),
             (QList<ShownNotice>{{notice.title, body, QStringLiteral("transfer.complete")}}));
}

void TestNotices::theIdentifierDecidesWhatTakesAPlace()
{
    QVERIFY(m_daemon.start("no"));
    DBusNoticeCenter center;
    const auto add = [&](const char *identifier, const char *body) {
        QCoro::waitFor(center.add(
            {QLatin1String(identifier), QStringLiteral("t"), QLatin1String(body), true}));
    };
    add("one", "first");
    add("two", "second");
    add("one", "third");
    QStringList bodies;
    for (const ShownNotice &shown : m_daemon.takeShown()) {
        bodies += shown.body;
    }
    bodies.sort();
    QCOMPARE(bodies, (QStringList{QStringLiteral("second"), QStringLiteral("third")}));
}

void TestNotices::aFinishedDownloadIsAnnouncedByItsTitle()
{
    QVERIFY(m_daemon.start("no"));
    CompletionNotifier notifier(std::make_unique<DBusNoticeCenter>());
    const QString nasty = QStringLiteral("line\nbreak\u202E\U0001F3AC") + QChar(0xD800);
    QCoro::waitFor(notifier.notify(QStringLiteral("A film")));
    QCoro::waitFor(notifier.notify(QStringLiteral("A film")));
    QCoro::waitFor(notifier.notify(nasty));
    const QList<ShownNotice> shown = m_daemon.takeShown();
    QCOMPARE(shown.size(), 3);
    for (const ShownNotice &notice : shown) {
        QCOMPARE(notice.summary, QStringLiteral("Saved to your library"));
    }
    QCOMPARE(shown.at(0).body, QStringLiteral("A film"));
    QCOMPARE(shown.at(1).body, QStringLiteral("A film"));
}

void TestNotices::theUserIsAskedOnceAndTheAnswerHolds()
{
    Asking willing;
    willing.finish("one");
    willing.finish("two");
    QCOMPARE(willing.center->questions, 1);
    QCOMPARE(willing.center->posted.size(), size_t(2));
    const Notice &first = willing.center->posted.front();
    QCOMPARE(first.title, QStringLiteral("Saved to your library"));
    QCOMPARE(first.body, QStringLiteral("one"));
    QVERIFY(first.defaultSound);
    QVERIFY(!QUuid::fromString(first.identifier).isNull());
    QVERIFY(first.identifier != willing.center->posted.back().identifier);

    Asking unwilling;
    unwilling.center->answer = false;
    unwilling.finish("one");
    unwilling.finish("two");
    QCOMPARE(unwilling.center->questions, 1);
    QVERIFY(unwilling.center->posted.empty());

    Asking quiet;
    quiet.center->status = AuthorizationStatus::provisional;
    quiet.finish("one");
    QCOMPARE(quiet.center->questions, 0);
    QCOMPARE(quiet.center->posted.size(), size_t(1));
}

void TestNotices::aQuestionThatFailsCountsAsARefusalForGood()
{
    Asking asking;
    asking.center->asksInVain = true;
    asking.finish("one");
    asking.center->asksInVain = false;
    asking.finish("two");
    QCOMPARE(asking.center->questions, 1);
    QVERIFY(asking.center->posted.empty());
}

QTEST_GUILESS_MAIN(TestNotices)
#include "tst_notices.moc"
